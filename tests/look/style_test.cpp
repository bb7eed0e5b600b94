#include "look/icons.h"
#include "look/palettes.h"
#include "look/rounded.h"
#include "look/style.h"

#include <QApplication>
#include <QButtonGroup>
#include <QGroupBox>
#include <QLineEdit>
#include <QPainter>
#include <QRadioButton>
#include <QScrollBar>
#include <QStyleOption>
#include <QTest>
#include <QVBoxLayout>

#include <cmath>
#include <functional>

using namespace ktr;
using namespace Qt::StringLiterals;

namespace {

qsizetype differentPixels(const QImage &one, const QImage &other)
{
    qsizetype count = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            count += one.pixel(x, y) != other.pixel(x, y) ? 1 : 0;
        }
    }
    return count;
}

/// How far the pixels that differ most are apart, 0 to 255.
int farthest(const QImage &one, const QImage &other)
{
    int most = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QColor a = one.pixelColor(x, y);
            const QColor b = other.pixelColor(x, y);
            most = std::max({most, std::abs(a.red() - b.red()), std::abs(a.green() - b.green()),
                             std::abs(a.blue() - b.blue())});
        }
    }
    return most;
}

QImage drawn(IconName name, QIcon::Mode mode = QIcon::Normal)
{
    return icon(name).pixmap(QSize(24, 24), 1.0, mode).toImage();
}

} // namespace

class StyleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { applyAppearance(*qApp, Appearance::Light); }

    void tabComesToTheChosenRadioButtonAndArrowsChooseFromThere_data()
    {
        QTest::addColumn<bool>("grouped");
        QTest::newRow("siblings") << false;
        QTest::newRow("a group") << true;
    }
    void tabComesToTheChosenRadioButtonAndArrowsChooseFromThere()
    {
        QFETCH(const bool, grouped);
        QWidget window;
        QVBoxLayout layout(&window);
        QLineEdit before;
        QRadioButton first(u"1"_s);
        QRadioButton second(u"2"_s);
        QRadioButton third(u"3"_s);
        QLineEdit after;
        QButtonGroup group;
        layout.addWidget(&before);
        for (QRadioButton *button : {&first, &second, &third}) {
            layout.addWidget(button);
            if (grouped) {
                group.addButton(button);
            }
        }
        layout.addWidget(&after);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));

        before.setFocus();
        QTest::keyClick(&before, Qt::Key_Tab); // none is chosen yet
        QCOMPARE(window.focusWidget(), &first);
        third.setChecked(true); // as a page that shows a record does
        before.setFocus();
        QTest::keyClick(&before, Qt::Key_Tab);
        QCOMPARE(window.focusWidget(), &third);
        QTest::keyClick(&third, Qt::Key_Up);
        QVERIFY(second.isChecked() && second.hasFocus());
        QTest::keyClick(&second, Qt::Key_Tab);
        QCOMPARE(window.focusWidget(), &after);
        QTest::keyClick(&after, Qt::Key_Tab, Qt::ShiftModifier);
        QCOMPARE(window.focusWidget(), &second);
    }

    void textsCanBeReadOnEveryGroundInLightAndDark()
    {
        for (const QPalette &palette : {lightPalette(), darkPalette()}) {
            const auto colour = [&palette](QPalette::ColorRole role,
                                           QPalette::ColorGroup group = QPalette::Active) {
                return palette.color(group, role);
            };
            const QColor base = colour(QPalette::Base);
            for (const QColor &ground : {colour(QPalette::Window), cardColour(palette), base, tint(palette),
                                         colour(QPalette::AlternateBase), colour(QPalette::Button)}) {
                QVERIFY(contrast(colour(QPalette::WindowText), ground) >= 4.5);
            }
            for (const QColor &ground : {colour(QPalette::Window), cardColour(palette), base}) {
                QVERIFY(contrast(colour(QPalette::WindowText, QPalette::Disabled), ground) >= 3);
                QVERIFY(contrast(fieldBorder(palette), ground) >= 3);
                QVERIFY(contrast(accent(palette), ground) >= 4.5);
                QVERIFY(contrast(colour(QPalette::Link), ground) >= 4.5);
            }
            QVERIFY(contrast(colour(QPalette::HighlightedText), colour(QPalette::Highlight)) >= 4.5);
            QVERIFY(contrast(accentText(palette), accent(palette)) >= 4.5);
            QVERIFY(contrast(colour(QPalette::ToolTipText), colour(QPalette::ToolTipBase)) >= 4.5);
            QVERIFY(contrast(colour(QPalette::PlaceholderText), base) >= 4.5);
        }
    }

    void theAppearanceChangesWhileRunning()
    {
        QWidget window;
        window.show();
        applyAppearance(*qApp, Appearance::Dark);
        QTRY_VERIFY(isDark(window.palette()));
        const QStyle *style = QApplication::style();
        // The platform of the tests is light.
        applyAppearance(*qApp, Appearance::System);
        QTRY_VERIFY(!isDark(window.palette()));
        QCOMPARE(QApplication::style(), style);
    }

    void onlyTheOuterGroupBoxIsACard()
    {
        QGroupBox outer(u"Outer"_s);
        auto *inner = new QGroupBox(u"Inner"_s);
        auto *column = new QVBoxLayout(&outer);
        column->addWidget(inner);
        auto *rows = new QVBoxLayout(inner);
        rows->addWidget(new QWidget);
        outer.resize(300, 200);
        const QImage image = outer.grab().toImage();
        const QPalette palette = outer.palette();
        QCOMPARE(image.pixelColor(150, 195), cardColour(palette));
        QCOMPARE(image.pixelColor(150, 0), hairline(palette));
        // Contents of the inner box begin at its very edge, in line with what else stands on the card.
        QCOMPARE(rows->contentsMargins().left(), 0);
        QCOMPARE(column->contentsMargins().left(), 12);
        for (int y = inner->y(); y <= inner->geometry().bottom(); ++y) {
            QCOMPARE(image.pixelColor(inner->geometry().right(), y), cardColour(palette));
        }
    }

    void theThumbOfAScrollBarReachesBothEndsHoweverLongTheList()
    {
        QScrollBar bar(Qt::Vertical);
        bar.resize(12, 300);
        bar.setRange(0, 2'000'000'000);
        bar.setPageStep(20);
        const auto thumb = [&bar] {
            QStyleOptionSlider option;
            option.initFrom(&bar);
            option.orientation = Qt::Vertical;
            option.minimum = bar.minimum();
            option.maximum = bar.maximum();
            option.pageStep = bar.pageStep();
            option.sliderPosition = bar.sliderPosition();
            return bar.style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider,
                                               &bar);
        };
        QCOMPARE(thumb().top(), 0);
        QVERIFY(thumb().height() >= 30);
        bar.setValue(bar.maximum());
        QCOMPARE(thumb().bottom(), 299);
        // No page step and no range, as an empty list has them.
        bar.setRange(0, 0);
        QCOMPARE(thumb().height(), 300);
    }

    void aRoundedRectanglePutTogetherLooksLikeOneDrawnAtOnce()
    {
        const std::array sizes = {QSize(300, 28), QSize(28, 300), QSize(22, 22), QSize(40, 13),
                                  QSize(13, 14),  QSize(12, 4),   QSize(3, 80),  QSize(5, 5)};
        for (const int ratio : {1, 2}) {
            for (const QSize size : sizes) {
                for (const double width : {1.0, 1.3, 2.0}) {
                    for (const double radius : {4.0, 5.0, 11.0}) {
                        for (const QColor &fill : {QColor(), QColor(Qt::white), QColor(0, 90, 200, 40)}) {
                            const auto paint = [&](const std::function<void(QPainter &)> &draw) {
                                QImage image((size + QSize(12, 12)) * ratio,
                                             QImage::Format_ARGB32_Premultiplied);
                                image.setDevicePixelRatio(ratio);
                                image.fill(QColor(230, 232, 240));
                                QPainter painter(&image);
                                painter.translate(3, 5);
                                draw(painter);
                                return image;
                            };
                            const QRect rect(QPoint(4, 2), size);
                            const QColor border(90, 100, 120, 200);
                            const QBrush brush = fill.isValid() ? QBrush(fill) : QBrush(Qt::NoBrush);
                            const QImage found = paint([&](QPainter &painter) {
                                drawRounded(&painter, rect, radius, border, brush, width);
                            });
                            const QImage meant = paint([&](QPainter &painter) {
                                const double inset = width / 2;
                                painter.setRenderHint(QPainter::Antialiasing);
                                painter.setPen(QPen(border, width));
                                painter.setBrush(brush);
                                painter.drawRoundedRect(QRectF(rect).adjusted(inset, inset, -inset, -inset),
                                                        radius, radius);
                            });
                            const int off = farthest(found, meant);
                            QVERIFY2(off <= 3, qPrintable(u"%1 × %2, %3, %4, %5: %6"_s.arg(size.width())
                                                              .arg(size.height())
                                                              .arg(width)
                                                              .arg(radius)
                                                              .arg(ratio)
                                                              .arg(off)));
                        }
                    }
                }
            }
        }
    }

    void everyIconIsDrawnDifferentlyAndLineIconsFollowTheTextColour()
    {
        const int last = static_cast<int>(IconName::Recent);
        QList<QImage> light(last + 1);
        for (int name = 0; name <= last; ++name) {
            light[name] = drawn(static_cast<IconName>(name));
            for (int other = 0; other < name; ++other) {
                QVERIFY(differentPixels(light[name], light[other]) > 20);
            }
        }
        QVERIFY(drawn(IconName::Save, QIcon::Disabled) != drawn(IconName::Save));
        applyAppearance(*qApp, Appearance::Dark);
        QVERIFY(drawn(IconName::Save) != light[static_cast<int>(IconName::Save)]);
        QVERIFY(drawn(IconName::Warning) == light[static_cast<int>(IconName::Warning)]);
    }
};

QTEST_MAIN(StyleTest)
#include "style_test.moc"
