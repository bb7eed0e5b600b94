#pragma once

#include <QChar>

namespace ktr {

/// What a module and its modem say to each other. The program stands in for the modem.
namespace modem_words {
inline constexpr char askPin[] = "at+cpin";       ///< the module begins a dialogue
inline constexpr char askPinState[] = "at+cpin?"; ///< the same, as it asks over Ethernet
inline constexpr char readSms[] = "at+cmgr=";     ///< then the number of the SMS
inline constexpr char sendSms[] = "at+cmgs";      ///< then ="+4917012345", and the text in a line of its own
inline constexpr char config[] = "config";        ///< the program takes the dialogue over
inline constexpr char programsHeader[] = ",\"+IP\""; ///< in front of an SMS from the program: the sender
inline constexpr char error[] = "ERROR";             ///< the modem could not do it
inline constexpr char noSmsCode[] = "321";           ///< in such a line: there is no SMS to be read
inline constexpr char noSms[] = "+CMS NO SMS";       ///< what is shown and logged for that
inline constexpr QChar endOfSms = u'\x1A';           ///< Ctrl-Z
} // namespace modem_words

} // namespace ktr
