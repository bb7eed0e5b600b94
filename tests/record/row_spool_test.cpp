#include "record/row_form.h"
#include "record/row_spool.h"
#include "record/spool_place.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace ktr;
using namespace Qt::StringLiterals;

namespace {

/// Of each kind one with a value in each field, and one without.
std::vector<RecordRow> rowsOfAllKinds()
{
    const QString text = u"ä\n\"\\\u0001 Ω\U0001F600"_s;
    constexpr qint64 large = 9'007'199'254'740'995; // no double has it
    return {EventRow{large, 2, 3, EventKind::Puk, text, u"{}"_s, u"Anna"_s, 4},
            EventRow{},
            StationRow{1, text, false, u"{\"online\":true}"_s},
            StationRow{},
            NotificationRow{1, text, 2, 3, 4, 5, 6, false},
            NotificationRow{},
            AlarmRow{1,
                     2,
                     AlarmKind::Flood,
                     text,
                     3,
                     4,
                     5,
                     6,
                     {u"+1"_s, u"+2"_s},
                     7,
                     u"a"_s,
                     u"b"_s,
                     8,
                     u"c"_s,
                     9,
                     u"d"_s,
                     u"e"_s},
            AlarmRow{},
            HistoryRow{1, 18, large, u"1"_s, u"2"_s},
            HistoryRow{},
            ValueRow{1, 2, 3, text},
            ValueRow{},
            ListFileRow{u"5:ab"_s, 2, 3},
            ListFileRow{},
            SettingRow{u"a"_s, text},
            SettingRow{},
            RequestRow{1, 2, u"Anna"_s, u"online"_s, text},
            RequestRow{},
            RequestAnswerRow{1, 2, text},
            RequestAnswerRow{}};
}

std::shared_ptr<const RowBatch> batch(qint64 number, const QString &text, const QString &writer = u"one"_s)
{
    return std::make_shared<RowBatch>(
        RowBatch{writer, number, 7, 100 + number, {EventRow{.text = text}, SettingRow{text, {}}}});
}

QStringList textsOf(const std::vector<RowSpool::Kept> &kept)
{
    QStringList texts;
    for (const RowSpool::Kept &each : kept) {
        texts += std::get<EventRow>(each.batch.rows.front()).text;
    }
    return texts;
}

} // namespace

/// The file in which rows wait for a server.
class RowSpoolTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachRowIsTheSameAfterwards()
    {
        const std::vector<RecordRow> rows = rowsOfAllKinds();
        QSet<std::size_t> kinds;
        for (const RecordRow &row : rows) {
            kinds += row.index();
        }
        QCOMPARE(kinds.size(), qsizetype{std::variant_size_v<RecordRow>});
        std::vector<RecordRow> read;
        QVERIFY(readRowForm(rowForm(rows), read));
        QVERIFY(read == rows);
        for (const QByteArray &wrong : {QByteArray("{"), QByteArray(R"({"form":2,"rows":[]})"),
                                        QByteArray(R"({"form":1,"rows":[{"row":"of a later version"}]})")}) {
            QVERIFY2(!readRowForm(wrong, read), wrong.constData());
        }
    }

    void batchesComeOutInTheirOrder()
    {
        const QString path = m_folder.filePath(u"order.sqlite"_s);
        RowSpool spool(path);
        RowSpool other(path); // of another thread
        QVERIFY(spool.append({batch(1, u"a"_s), batch(2, u"b"_s)}));
        QVERIFY(spool.append({batch(2, u"b"_s), batch(3, u"c"_s)})); // not known to be there
        QVERIFY(spool.append({batch(1, u"d"_s, u"two"_s)}));
        RowSpool::Content content;
        QVERIFY(other.open() && other.look(content));
        QCOMPARE(content.rows, qint64{8});
        QCOMPARE(content.since, qint64{101});
        std::vector<RowSpool::Kept> kept;
        QVERIFY(other.oldest(3, kept)); // whole ones
        QCOMPARE(textsOf(kept), (QStringList{u"a"_s, u"b"_s}));
        QCOMPARE(kept.front().batch.keeper, qint64{7});
        QVERIFY(other.remove(kept));
        for (const QString &next : {u"c"_s, u"d"_s}) { // of one writer each
            kept.clear();
            QVERIFY(other.oldest(100, kept));
            QCOMPARE(textsOf(kept), QStringList(next));
            QVERIFY(other.remove(kept));
        }
        QVERIFY(other.look(content) && content.rows == 0 && content.since == 0);
        other.close();
        QVERIFY(spool.removeEmpty() && !QFile::exists(path));
    }

    void aFullOneTakesNoMore()
    {
        RowSpool spool(m_folder.filePath(u"full.sqlite"_s), 200'000);
        int count = 0;
        while (count < 1'000 && spool.append({batch(count + 1, QString(1'000, u'x'))})) {
            ++count;
        }
        QVERIFY(count > 20 && count < 200);
        std::vector<RowSpool::Kept> kept;
        QVERIFY(spool.oldest(1'000, kept));
        QCOMPARE(int(kept.size()), count);
        QVERIFY(spool.remove(kept) && spool.append({batch(2'000, u"again"_s)}));
    }

    void aDamagedOneIsKeptAside()
    {
        const QString path = m_folder.filePath(u"damaged.sqlite"_s);
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QByteArray(5'000, 'x')) == 5'000);
        file.close();
        RowSpool spool(path);
        QString remark;
        const Status opened = spool.open(&remark);
        QVERIFY2(opened, qPrintable(opened.message()));
        QVERIFY2(remark.contains(u"damaged (1).sqlite"_s), qPrintable(remark));
        QVERIFY(spool.append({batch(1, u"a"_s)}));
    }

    void whatIsNotTakenIsKeptInIt()
    {
        RowSpool spool(m_folder.filePath(u"refused.sqlite"_s));
        QVERIFY(spool.append({batch(1, u"a"_s)}));
        std::vector<RowSpool::Kept> kept;
        QVERIFY(spool.oldest(10, kept));
        for (int twice = 0; twice < 2; ++twice) { // the server was lost in between
            QVERIFY(spool.keepRefused(kept.front().batch, {{0, u"out of range"_s}}));
        }
        QVERIFY(spool.remove(kept));
        RowSpool::Content content;
        QVERIFY(spool.look(content));
        QCOMPARE(content.refused, qint64{1});
        QVERIFY(!spool.removeEmpty());
    }

    /// Keepers on one machine have a file each; those of keepers that are gone are taken over by the next.
    void whatIsLeftBehindIsFound()
    {
        const QString folder = m_folder.filePath(u"state/keepers"_s);
        const QString address = u"postgresql://db/record"_s;
        auto one = std::make_unique<SpoolPlace>();
        auto two = std::make_unique<SpoolPlace>();
        SpoolPlace foreign;
        QVERIFY(one->take(folder, address) && two->take(folder, address));
        QVERIFY(foreign.take(folder, u"postgresql://db/other"_s));
        QCOMPARE(QSet<QString>({one->path(), two->path(), foreign.path()}).size(), 3);
        int number = 0;
        for (const auto *place : {one.get(), two.get(), &foreign}) {
            ++number;
            QVERIFY(RowSpool(place->path()).append({batch(number, QString::number(number))}));
        }
        const QString own = one->path();
        const QString left = two->path();
        two.reset();
        auto other = std::make_unique<SpoolPlace>();
        QVERIFY(other->take(folder, address)); // in the place of the one that is gone
        QVERIFY(other->path() == left && other->leftBehind().isEmpty());
        one.reset();
        other.reset();
        SpoolPlace next;
        QVERIFY(next.take(folder, address));
        QVERIFY(next.path() == own && next.leftBehind() == QStringList(left));

        RowSpool spool(own);
        QVERIFY(spool.adopt(left));
        QVERIFY(!QFile::exists(left));
        std::vector<RowSpool::Kept> kept;
        QVERIFY(spool.oldest(100, kept));
        QCOMPARE(textsOf(kept), (QStringList{u"1"_s, u"2"_s}));
    }

private:
    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(RowSpoolTest)
#include "row_spool_test.moc"
