#include "config/scaling_points.h"

#include <QTest>

using namespace ktr;

class ScalingPointsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theLineGoesThroughBothPoints_data()
    {
        QTest::addColumn<QList<double>>("points"); // signal, value, signal, value
        QTest::addColumn<QString>("expected");     // offset and factor
        QTest::newRow("4 to 20 mA") << QList<double>{4, 0, 20, 100} << "-25 6.25";
        QTest::newRow("the other way round") << QList<double>{20, 100, 4, 0} << "-25 6.25";
        QTest::newRow("falling") << QList<double>{0, 10, 1023, -10} << "10 -0.019550342";
        QTest::newRow("tiny") << QList<double>{0, 0, 65535, 0.001} << "0 0.000000015259";
        QTest::newRow("large") << QList<double>{0, 1e9, 1, 1e9 + 5} << "1000000000 5";
        QTest::newRow("constant") << QList<double>{0, 7, 1, 7} << "7 0";
        QTest::newRow("equal signals") << QList<double>{5, 0, 5, 1} << "none";
        QTest::newRow("the same point") << QList<double>{5, 1, 5, 1} << "none";
    }
    void theLineGoesThroughBothPoints()
    {
        QFETCH(const QList<double>, points);
        const auto line = scalingThrough({points[0], points[1]}, {points[2], points[3]});
        const QString found =
            line ? scalingNumber(line->offset) + u' ' + scalingNumber(line->factor) : QStringLiteral("none");
        QTEST(found, "expected");
    }
};

QTEST_GUILESS_MAIN(ScalingPointsTest)
#include "scaling_points_test.moc"
