#pragma once

#include "opmode/window/record/report_page.h"

#include <array>

class QTabWidget;

namespace ktr {

class OperationalMode;
class TimeMapPage;

/// A window over the record of the operational mode: it finds what happened and reports about it. It must be
/// gone before that record is closed.
class RecordWindow : public QWidget
{
    Q_OBJECT

public:
    RecordWindow(OperationalMode &mode, const FindPage::Services &services);
    ~RecordWindow() override;

    /// Comes to the front, ready for a text to be typed.
    void appear();
    /// The same with the map of time.
    void appearWithMap();

Q_SIGNALS:
    void statusMessage(const QString &line);

protected:
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void comeToFront();
    void applyTexts();

    RecordQueries m_queries;
    QTimer *m_second;
    QTabWidget *m_tabs;
    FindPage *m_find;
    TimeMapPage *m_map;
    std::array<ReportPage *, 3> m_reports; ///< by their kinds
};

} // namespace ktr
