#include "cli/patient_output.h"

#include <QTest>

#include <thread>
#include <unistd.h>

using namespace ktr::cli;

class PatientOutputTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatAQueueCannotHoldIsCountedInItsPlace()
    {
        constexpr int lines = 60'000; // several times what pipe, queue and hand hold
        int pipe[2];
        QCOMPARE(::pipe(pipe), 0);
        const int own = ::dup(STDOUT_FILENO);
        std::fflush(stdout);
        ::dup2(pipe[1], STDOUT_FILENO);
        QByteArray read;
        std::thread reader;
        bool isWhole = false;
        {
            PatientOutput output(
                {[](qint64 count) { return "-" + QByteArray::number(count) + '\n'; }, [](int) {}, 1 << 15});
            for (int line = 0; line < lines; ++line) { // nobody reads
                output.put(stdout, QByteArray::number(line) + '\n');
            }
            reader = std::thread([&] {
                char bytes[4096];
                for (ssize_t count = 1; count > 0;) {
                    count = ::read(pipe[0], bytes, sizeof bytes);
                    read.append(bytes, std::max<ssize_t>(count, 0));
                }
            });
            isWhole = output.end().lines == 0;
        }
        ::dup2(own, STDOUT_FILENO);
        ::close(pipe[1]);
        reader.join();
        QVERIFY(isWhole);
        int next = 0;
        int gaps = 0;
        for (const QByteArray &line : read.chopped(1).split('\n')) {
            if (line.startsWith('-')) {
                next -= line.toInt();
                ++gaps;
            } else {
                QCOMPARE(line.toInt(), next++);
            }
        }
        QCOMPARE(next, lines);
        QVERIFY(gaps > 0);
        ::close(own);
        ::close(pipe[0]);
    }
};

QTEST_APPLESS_MAIN(PatientOutputTest)
#include "patient_output_test.moc"
