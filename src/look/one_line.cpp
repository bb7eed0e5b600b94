#include "look/one_line.h"

#include "platform/text_rules.h"

#include <QApplication>
#include <QEvent>
#include <QLineEdit>
#include <QValidator>

namespace ktr {

namespace {

/// Accepts everything; the field takes what it makes of the text before anybody is told of a change, in
/// whatever way the text came.
class OneLine : public QValidator
{
public:
    using QValidator::QValidator;

    State validate(QString &input, int &caret) const override
    {
        const QString whole = pastedLine(input);
        if (whole != input) {
            // Up to the caret stands what was pasted: its own end counts, too.
            const QString before = pastedLine(input.left(caret));
            const QString behind = pastedLine(input.mid(caret));
            input = before + behind;
            caret = static_cast<int>(before.size());
        }
        return Acceptable;
    }
};

class Fields : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Polish) {
            if (auto *field = qobject_cast<QLineEdit *>(watched);
                field != nullptr && field->validator() == nullptr && field->inputMask().isEmpty()) {
                field->setValidator(new OneLine(field));
            }
        }
        return false;
    }
};

} // namespace

void keepFieldsOnOneLine(QApplication &application)
{
    static const QString name = QStringLiteral("FieldsOnOneLine");
    if (application.findChild<QObject *>(name, Qt::FindDirectChildrenOnly) == nullptr) {
        auto *fields = new Fields(&application);
        fields->setObjectName(name);
        application.installEventFilter(fields);
    }
}

} // namespace ktr
