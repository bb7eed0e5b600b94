#pragma once

#include "platform/timers.h"
#include "simulator/field_texts.h"

#include <QByteArray>

#include <deque>

namespace ktr {

struct FieldModuleOptions
{
    quint32 seed = 1;
    Milliseconds every{20'000}; ///< from one dialogue with its modem to the next, on average
    /// It has no modem of its own, and numbers its texts: each is said again until the program has answered
    /// it.
    bool isCounted = false;
    FieldLanguage language = FieldLanguage::German;
};

/// A module in operation. It has no clock and no socket: its owner passes on what arrives and wakes it when
/// it asked for that.
///
///     program            module
///     config         ->                            it knows the program now and announces itself
///                    <-  at+cpin?                  the beginning of each dialogue
///     config         ->                            taken over: the program is its modem
///                    <-  at+cmgr=1                 is there an SMS?
///     ,"+IP"; A*     ->  at+cmgs="+49..."; text    a command, answered by an SMS
///
/// Without an answer it uses its own modem, if it has one, and the program is sent a copy of both sides.
class FieldModule
{
public:
    using Send = std::function<void(const QByteArray &datagram)>;
    using Now = std::function<QDateTime()>;
    /// A text was said to the program, or answered by it.
    using Told = std::function<void(const QString &text, bool isAnswered)>;

    /// How long an answer is waited for: to its question for the SIM, which its own modem answers otherwise;
    /// to any other line.
    static constexpr Milliseconds patience{400};
    static constexpr Milliseconds longestWait{2000};
    /// Between two lines of a dialogue with its own modem.
    static constexpr Milliseconds pace{20};
    static constexpr int hoursOfHistory = 48; ///< reported at first

    FieldModule(const FieldModuleOptions &options, Send send, Now now, Told told = {});

    /// Takes a datagram of the program. Returns after which time wake() is to be called; nothing: as before.
    std::optional<Milliseconds> receive(const QByteArray &datagram);
    /// Continues; returns after which time to call it again.
    std::optional<Milliseconds> wake();

    qint64 smsSent() const { return m_smsSent; }
    qint64 commandsTaken() const { return m_commandsTaken; }

private:
    enum class Step {
        Unknown, ///< no program was heard
        Resting,
        AskedForSim,
        Reading,    ///< asked for an SMS
        TakingText, ///< the next line is the text of an SMS
        Addressing, ///< sent the number
        Sending,    ///< sent the text
        OnOwnModem,
    };

    int chance(int below) { return static_cast<int>((m_random() >> 8U) % static_cast<unsigned>(below)); }
    void hear(const QString &line);
    void hearConfig();
    void takeCommand(const QString &command);
    void begin();
    void addTexts();
    void tell(const QString &text, bool isAnswered) const;
    void useOwnModem();
    void hearOk();
    void sendNextSms();
    void rest();
    void say(const QString &text);
    void waitFor(Step step, Milliseconds wait);
    QString addressing() const { return QStringLiteral("at+cmgs=\"%1\"\r").arg(m_number); }
    QString quality() const { return QStringLiteral("+CSQ: %1,0\r\n").arg(m_quality); }
    void dropSms();

    FieldModuleOptions m_options;
    Send m_send;
    Now m_now;
    Told m_told;
    FieldTexts m_texts;
    std::minstd_rand m_random;
    QString m_number;
    Step m_step = Step::Unknown;
    std::optional<Milliseconds> m_wait; ///< asked for by what just happened
    QString m_said;                     ///< the last line, as the program repeats it
    bool m_isRepeated = false;          ///< by the program: its next "OK" is about that line
    bool m_lookAgain = false;           ///< an SMS came in this dialogue: there may be more
    bool m_isAddressed = false;         ///< its own modem knows the number of the next SMS
    bool m_reportedHistory = false;
    int m_quality;
    int m_lockedFor = 0;               ///< so many dialogues the SIM still needs its PUK
    std::deque<QString> m_toSend;      ///< SMS texts
    std::deque<QString> m_ownDialogue; ///< what is still to be copied of it
    int m_count = 0;                   ///< texts that have numbers
    qint64 m_smsSent = 0;
    qint64 m_commandsTaken = 0;
};

} // namespace ktr
