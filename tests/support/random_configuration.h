#pragma once

#include "config/fields.h"

#include <QLocale>
#include <QString>

#include <random>

namespace ktr::test {

using namespace Qt::StringLiterals;

/// Configurations as people could fill them in: every field used, within what a module takes.
class RandomConfiguration
{
public:
    explicit RandomConfiguration(unsigned seed) : m_random(seed) {}

    Configuration make(const QLocale &locale)
    {
        m_point = locale.decimalPoint();
        Configuration c;
        c.versionText = u"2026-11-%1 12:00:00"_s.arg(whole(10, 30));
        c.gsm = {digits(4), whole(0, 1) == 0 ? u"KTR"_s : u"NVA"_s, text(12, false), decimal()};
        for (Administrator &administrator : c.administrators) {
            administrator = {text(10), whole(0, 4) == 0 ? QString() : u'+' + digits(11)};
        }
        for (int i = 0; i < LimitValue::count; ++i) {
            LimitValue &value = c.limitValues[static_cast<std::size_t>(i)];
            value.alarm = text(60);
            value.recipients = static_cast<quint8>(whole(0, 255));
            value.repetitions = static_cast<qint16>(whole(0, 15));
            value.repetitionInterval = QString::number(whole(1, 1440));
            if (LimitValue::isReference(i)) {
                value.reference = whole(0, 65535);
            } else {
                value.channel = static_cast<qint16>(whole(0, 18));
                value.comparison = static_cast<qint16>(whole(1, 3));
                value.limit = decimal();
                value.hysteresis = decimal();
                value.delay = decimal();
            }
        }
        for (Archiving &archiving : c.archiving) {
            archiving = {QString::number(whole(0, 1440)), decimal()};
        }
        for (DigitalInput &input : c.digitalInputs) {
            input = {flag(), QString::number(whole(1, 10000)), flag(), flag(), decimal()};
        }
        for (OutputHours &hours : c.outputHours) {
            hours = {flag(), decimal()};
        }
        c.sendValues[0].enabled = flag();
        for (Scaling &scaling : c.scaling) {
            scaling = {decimal(), decimal(), text(5)};
        }
        for (OutputValue &value : c.outputValues) {
            value = {flag(), decimal()};
        }
        for (SwitchPoint &point : c.switchPoints) {
            point.target = static_cast<qint16>(whole(0, 10));
            point.type = static_cast<qint16>(whole(0, 16));
            point.start = flag() ? QString() : date() + u"%1%2"_s.arg(whole(10, 23)).arg(whole(10, 59));
            point.period = QString::number(flag() ? whole(0, 1440) : whole(525590, 525610));
            point.value = decimal();
            point.limitValue = static_cast<qint16>(whole(0, 19));
        }
        for (int i = whole(0, HolidayList::capacity); i > 0; --i) {
            c.holidays.add(QDate(whole(2000, 2099), whole(1, 12), whole(1, 28)));
        }
        const auto group = [this] { return u"%1"_s.arg(whole(0, 255), 3, 10, QLatin1Char('0')); };
        const auto byte = [this] { return u"%1"_s.arg(whole(0, 255), 2, 16, QLatin1Char('0')).toUpper(); };
        const auto address = [&group] { return group() + u'.' + group() + u'.' + group() + u'.' + group(); };
        c.ethernet = {address(), address(), byte(), byte(), byte()};
        return c;
    }

private:
    int whole(int lowest, int highest)
    {
        return std::uniform_int_distribution<int>(lowest, highest)(m_random);
    }
    bool flag() { return whole(0, 1) == 1; }
    QString date() { return QDate(whole(2001, 2099), whole(1, 12), whole(1, 28)).toString(u"yyMMdd"_s); }
    QString decimal()
    {
        const QString number = QString::number(whole(-999, 9999));
        return flag() ? number : number + m_point + QString::number(whole(0, 99));
    }
    QString digits(int count)
    {
        QString text;
        while (count-- > 0) {
            text += QChar(u'0' + whole(0, 9));
        }
        return text;
    }
    QString text(int longest, bool withCommas = true)
    {
        static const QString letters = u"abcXYZ 0189.;:-_#\"'<>&=?!()ÄÖÜ€°§µ\r\x1A,"_s;
        QString text;
        for (int count = whole(0, longest); count > 0; --count) {
            text += letters[whole(0, static_cast<int>(letters.size()) - (withCommas ? 1 : 2))];
        }
        return text;
    }

    std::mt19937 m_random;
    QString m_point;
};

} // namespace ktr::test
