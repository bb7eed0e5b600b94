#include "config/address.h"

#include <QTest>

using namespace ktr;

class AddressTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTextIsJudgedToldAndShownAlike_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<AddressDefect>("defect");
        QTest::addColumn<QString>("number");
        QTest::addColumn<QString>("plain");
        const auto row = [](const char *text, AddressDefect defect, const char *number,
                            const char *plain = nullptr) {
            QTest::newRow(text) << text << defect << number << (plain == nullptr ? text : plain);
        };
        row("10.0.0.1", AddressDefect::None, "167772161");
        row("010.000.255.008", AddressDefect::None, "167837448", "10.0.255.8");
        row("255.255.255.255", AddressDefect::None, "4294967295");
        row("0.0.0.0", AddressDefect::None, "0");
        row("", AddressDefect::NoDots, "");
        row("1921681", AddressDefect::NoDots, "");
        row("192.168.1", AddressDefect::NotFourNumbers, "");
        row("01.2.3.4.5", AddressDefect::NotFourNumbers, "");
        row("192.168.01.256", AddressDefect::NumberOutOfRange, "3232236032");
        row("300.0.0.0", AddressDefect::NumberOutOfRange, "");
        row("-1.168.1.25", AddressDefect::NumberOutOfRange, "");
        row("192..1.2", AddressDefect::NumberOutOfRange, "");
        row("192.168.01.1a", AddressDefect::NumberOutOfRange, "");
        row("192,168.20.15.1", AddressDefect::NumberOutOfRange, "");
        row("10.0.0.1,0", AddressDefect::NumberOutOfRange, "");
        row("10.0.0.1e0", AddressDefect::NumberOutOfRange, "");
        row("pump.example.org.net", AddressDefect::NumberOutOfRange, "");
    }
    void aTextIsJudgedToldAndShownAlike()
    {
        QFETCH(QString, text);
        const auto number = addressNumber(text);
        QTEST(addressDefect(text), "defect");
        QTEST(number ? QString::number(*number) : QString(), "number");
        QTEST(withoutLeadingZeros(text), "plain");
    }
};

QTEST_APPLESS_MAIN(AddressTest)
#include "address_test.moc"
