#include "app/program_end.h"

#include "look/message_dialog.h"

#include <QApplication>
#include <QScopedValueRollback>

#include <utility>

namespace ktr {

ProgramEnd::ProgramEnd(QWidget &window, const TextTable &texts, Questions questions,
                       std::function<Works()> works)
    : m_window(window), m_texts(texts), m_questions(std::move(questions)), m_works(std::move(works))
{
    m_tryAgain.setSingleShot(true);
    connect(&m_tryAgain, &QTimer::timeout, this, &ProgramEnd::closeWhenFree);
}

void ProgramEnd::closeWhenFree()
{
    constexpr Milliseconds later{100};
    QWidget *question = QApplication::activeModalWidget();
    if (question != nullptr && m_isRequested && m_questions.mayBeClosed(*question)) {
        question->close();
    }
    if (question != nullptr || m_questions.areOutside()) {
        m_tryAgain.start(later); // its caller goes on first, and may ask once more
    } else {
        // What else closing asks is for the user.
        const QScopedValueRollback ending(m_isEnding, std::exchange(m_isRequested, false));
        m_window.close();
        m_isAgreed = false;
    }
}

void ProgramEnd::closeOnRequest()
{
    m_isRequested = true;
    closeWhenFree();
}

void ProgramEnd::closeAsAgreed()
{
    m_isAgreed = true;
    closeWhenFree();
}

bool ProgramEnd::isUsersWish() const
{
    return !m_isAgreed && !m_isEnding;
}

bool ProgramEnd::mayEndWork()
{
    const Works works = m_works();
    QString question;
    if (works.testFlag(Work::Uploading)) {
        question = tr(
            "Firmware is being sent to the module. Closing ends that: the module then has a part of it only "
            "and may not work until it gets all of it. Close nevertheless?");
    } else if (works.testFlag(Work::Transmitting)) {
        question =
            tr("A configuration is being transmitted. Closing ends that: the module then holds a part of it "
               "only. Close nevertheless?");
    }
    return m_isAgreed || question.isEmpty() || Dialog::questionOfLoss(&m_window, m_texts, question);
}

} // namespace ktr
