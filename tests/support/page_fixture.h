#pragma once

#include "editor/page.h"
#include "support/environment.h"

#include <QTest>

namespace ktr::test {

/// What a page works on, without a main window around it.
struct PageFixture
{
    explicit PageFixture(const QLocale &locale = QLocale::c()) : document(fixedEnvironment(locale)) {}

    Document document;
    EditHistory history{document};
    TextTable texts;
    QStringList told;
    QStringList messages;
    EditorContext context{document,
                          history,
                          texts,
                          QStringLiteral("english"),
                          false,
                          [this](const QString &line) { told += line; },
                          [this](const QString &text) { messages += text; }};

    /// Shows a page and keeps it in step with the document, as the main window does.
    void open(Page &page)
    {
        page.applyTexts();
        page.showRecords();
        QObject::connect(&document, &Document::changed, &page, &Page::showRecords);
        page.show();
        page.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&page));
    }
};

/// The control of that name, wherever it stands below `root`; the test fails when there is none.
template <class Control> Control *control(const QWidget &root, const QString &name)
{
    auto *found = root.findChild<Control *>(name);
    if (found == nullptr) {
        qFatal("there is no control %s of the class wanted", qPrintable(name));
    }
    return found;
}

/// Types any characters; Qt's own key clicks know ASCII only.
inline void type(QWidget *control, const QString &text)
{
    for (const QChar c : text) {
        QTest::sendKeyEvent(QTest::Click, control, Qt::Key_unknown, QString(c), Qt::NoModifier);
    }
}

/// Types over what stands in a control.
inline void typeOver(QWidget *control, const QString &text)
{
    control->setFocus();
    QTest::keySequence(control, QKeySequence::SelectAll);
    type(control, text);
}

} // namespace ktr::test
