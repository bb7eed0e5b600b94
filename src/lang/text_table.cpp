#include "lang/text_table.h"

#include <algorithm>

namespace ktr {

namespace {

// Kept letter for letter, misspellings and the blank after "Scaling" included: translations and users go by
// them. 65 stands for falling below a limit value and reads like 64 all the same.
// clang-format off: a row a text
constexpr std::array englishTexts = {
    /*   1 */ u"File",
    /*   2 */ u"New",
    /*   3 */ u"Open",
    /*   4 */ u"Save",
    /*   5 */ u"Save as",
    /*   6 */ u"Print Preview",
    /*   7 */ u"Print",
    /*   8 */ u"Exit",
    /*   9 */ u"Transmit",
    /*  10 */ u"Configuration",
    /*  11 */ u"Application",
    /*  12 */ u"Connection",
    /*  13 */ u"Ethernet",
    /*  14 */ u"(exclusive)",
    /*  15 */ u"(+GSM)",
    /*  16 */ u"offline",
    /*  17 */ u"Operational Mode",
    /*  18 */ u"GSM",
    /*  19 */ u"Phone Number",
    /*  20 */ u"Admin",
    /*  21 */ u"PIN",
    /*  22 */ u"Station ID",
    /*  23 */ u"Alive Cycle",
    /*  24 */ u"IP",
    /*  25 */ u"Identifier",
    /*  26 */ u"Interval",
    /*  27 */ u"(min.)",
    /*  28 */ u"Delta",
    /*  29 */ u"Counter",
    /*  30 */ u"BStZ",
    /*  31 */ u"Invert",
    /*  32 */ u"Factor",
    /*  33 */ u"Value",
    /*  34 */ u"Scaling ",
    /*  35 */ u"Offset",
    /*  36 */ u"Factor",
    /*  37 */ u"Unit",
    /*  38 */ u"Volt",
    /*  39 */ u"Hours",
    /*  40 */ u"Limit Value",
    /*  41 */ u"LV",
    /*  42 */ u"Notification",
    /*  43 */ u"invalid",
    /*  44 */ u"Hysteresis",
    /*  45 */ u"Delay",
    /*  46 */ u"Comparison",
    /*  47 */ u"Notification to",
    /*  48 */ u"Switchpoint",
    /*  49 */ u"Type",
    /*  50 */ u"on Sundays",
    /*  51 */ u"on Mondays",
    /*  52 */ u"on Tuesdays",
    /*  53 */ u"on Wednesdays",
    /*  54 */ u"on Thursdays",
    /*  55 */ u"on Fridays",
    /*  56 */ u"weekdays",
    /*  57 */ u"weekend",
    /*  58 */ u"w.end & h.days",
    /*  59 */ u"on weekdays",
    /*  60 */ u"on holidays",
    /*  61 */ u"daily",
    /*  62 */ u"once",
    /*  63 */ u"periodic",
    /*  64 */ u"LV exceeded",
    /*  65 */ u"LV exceeded",
    /*  66 */ u"Value",
    /*  67 */ u"Start",
    /*  68 */ u"Delete",
    /*  69 */ u"Holidays",
    /*  70 */ u"Add",
    /*  71 */ u"Delete all",
    /*  72 */ u"Load holidays",
    /*  73 */ u"Save holidays",
    /*  74 */ u"Test",
    /*  75 */ u"Received SMS",
    /*  76 */ u"Debug",
    /*  77 */ u"Send SMS",
    /*  78 */ u"Send",
    /*  79 */ u"Set Time",
    /*  80 */ u"Send Archive Data",
    /*  81 */ u"Block Archive Data",
    /*  82 */ u"Delete Notifications",
    /*  83 */ u"Delete Dumb",
    /*  84 */ u"Configure with Answer",
    /*  85 */ u"File-Info",
    /*  86 */ u"Author",
    /*  87 */ u"Configuration Version",
    /*  88 */ u"(local)",
    /*  89 */ u"(KTR)",
    /*  90 */ u"Date",
    /*  91 */ u"Comment",
    /*  92 */ u"Logfile",
    /*  93 */ u"Open Logfile",
    /*  94 */ u"Subnet",
    /*  95 */ u"MAC",
    /*  96 */ u"Calibration",
    /*  97 */ u"Channel",
    /*  98 */ u"Analog Out",
    /*  99 */ u"Station",
    /* 100 */ u"Add",
    /* 101 */ u"Delete",
    /* 102 */ u"All online",
    /* 103 */ u"All offline",
    /* 104 */ u"View",
    /* 105 */ u"General",
    /* 106 */ u"Treeview",
    /* 107 */ u"Configuration Mode",
    /* 108 */ u"Export",
    /* 109 */ u"Connection",
    /* 110 */ u"Online",
    /* 111 */ u"Exclusive Mode",
    /* 112 */ u"on",
    /* 113 */ u"off",
    /* 114 */ u"exclusive",
    /* 115 */ u"CSQ",
    /* 116 */ u"new",
    /* 117 */ u"Notifications",
    /* 118 */ u"Accept",
    /* 119 */ u"History",
    /* 120 */ u"Refresh",
    /* 121 */ u"Application Version",
    /* 122 */ u"Period",
    /* 123 */ u"Minutes",
    /* 124 */ u"Export (Operational Mode)",
    /* 125 */ u"KTR",
    /* 126 */ u"Tools",
    /* 127 */ u"Settings",
    /* 128 */ u"Languages",
    /* 129 */ u"English",
    /* 130 */ u"German",
    /* 131 */ u"OK",
    /* 132 */ u"Cancel",
    /* 133 */ u"Accept",
    /* 134 */ u"About",
    /* 135 */ u"System Info",
    /* 136 */ u"Version",
    /* 137 */ u"PUK needed",
    /* 138 */ u"Pulses",
    /* 139 */ u"Maximal 20 holidays",
    /* 140 */ u"killing other config",
    /* 141 */ u"save?",
    /* 142 */ u"Save",
    /* 143 */ u"Please establish a connection",
    /* 144 */ u"Saving was not successful",
    /* 145 */ u"save with other name?",
    /* 146 */ u"Port is already in use",
    /* 147 */ u"has a active connection in Operational Mode.",
    /* 148 */ u"The Connection in Operational Mode will now be closed.",
    /* 149 */ u"Fatal Error: Message to long.",
    /* 150 */ u"Connection interrupted",
    /* 151 */ u"Kelvin",
    /* 152 */ u"Faulty Input: Seperate IP with dots.",
    /* 153 */ u"Faulty Input: Numbers have to be between 0 and 255.",
    /* 154 */ u"Faulty Input: IP has to consist of 4 numbers.",
    /* 155 */ u"Different Versions:",
    /* 156 */ u"Config-Tool:",
    /* 157 */ u"KTR-Application:",
    /* 158 */ u"Operating hours counter",
    /* 159 */ u"Limit",
    /* 160 */ u"Hyst.",
    /* 161 */ u"De-",
    /* 162 */ u"Com-",
    /* 163 */ u"lay",
    /* 164 */ u"parison",
    /* 165 */ u"Switchpoints",
    /* 166 */ u"not acknowledged",
    /* 167 */ u"Refresh could not",
    /* 168 */ u"be requested",
    /* 169 */ u"System Information is unavailable at this time.",
    /* 170 */ u"on Saturdays",
    /* 171 */ u"Repetitions",
    /* 172 */ u"times every",
    /* 173 */ u"minutes",
    /* 174 */ u"delay",
    /* 175 */ u"Open History",
};
// clang-format on

} // namespace

Text switchTypeText(int type)
{
    constexpr int saturdays = 6; // came later than the others
    const int first = static_cast<int>(Text::OnSundays);
    return type == saturdays ? Text::OnSaturdays
                             : static_cast<Text>(first + type - (type > saturdays ? 1 : 0));
}

void TextTable::fillEnglish()
{
    std::transform(englishTexts.begin(), englishTexts.end(), m_texts.begin() + 1,
                   [](const char16_t *text) { return QString::fromUtf16(text); });
}

QString TextTable::text(int number) const
{
    return number >= 1 && number <= count ? m_texts[static_cast<std::size_t>(number)] : QString();
}

void TextTable::setText(int number, const QString &text)
{
    if (number >= 1 && number <= count) {
        m_texts[static_cast<std::size_t>(number)] = text;
    }
}

} // namespace ktr
