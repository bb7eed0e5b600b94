#pragma once

#include "editor/page.h"

#include <QTabWidget>

#include <array>
#include <functional>

class QShortcut;

namespace ktr {

/// The pages of the main window, in the order of their tabs.
enum class PageIndex {
    Gsm,
    Ip,
    LimitValues,
    SwitchPoints,
    Test,
    FileInformation,
    Ethernet,
    Connection,
    Calibration
};
inline constexpr int pageCount = 9;

/// The tab strip with its pages. A page is built when it is first needed, or when there is time after the
/// window was shown.
class PageTabs : public QTabWidget
{
    Q_OBJECT

public:
    using Builder = std::function<Page *(PageIndex)>;

    PageTabs(EditorContext &context, Builder build, QWidget *parent = nullptr);

    /// The page, built by now.
    Page *page(PageIndex index);
    /// Null when it was not needed yet.
    // cppcheck-suppress CastIntegerToAddressAtReturn ; the array is one of pointers
    Page *builtPage(PageIndex index) const { return m_pages[static_cast<std::size_t>(index)]; }

    /// Builds one page that is not built yet; gives false when there is none.
    bool buildNext();

    /// Goes to a control, and to the entry of its page that it was in. Nothing happens when it is unknown.
    void goTo(const EditPlace &place);

    /// Where a control is, in the words of the page: tab, entry, label. Empty when it is unknown.
    QString describe(const EditPlace &place);

    /// Shows the entry so many behind the one that the present page shows; stays at the first and the last.
    void moveEntry(int by);

    void applyTexts();
    void showRecords();
    void setProblems(const QList<Problem> &problems);
    /// Does what choosing the present page's tab does.
    void enterPage();
    /// The first field of the present page gets the focus.
    void focusFirst();

Q_SIGNALS:
    void built(ktr::Page *page);

private:
    struct Found
    {
        int page = -1;
        QWidget *control = nullptr;
        bool standsForArray = false; ///< the control asked for is an array, and this its first element
    };
    Found find(const QString &control);
    bool hasFocusInPage() const;

    EditorContext &m_context;
    Builder m_build;
    std::array<Page *, pageCount> m_pages{};
    QList<Problem> m_problems;
    QList<std::pair<QShortcut *, int>> m_turns; ///< keys that turn pages, and by how many
};

} // namespace ktr
