#pragma once

#include "config/comparison.h"
#include "config/edit_history.h"
#include "link/changes.h"

#include <QSet>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <optional>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace ktr {

class EmptyNotice;

/// The present configuration beside another one, by fields or by commands, live: after an edit it shows the
/// new state. Fields and whole entries can be taken over from the other side, as edits that can be undone.
/// With a common ancestor it tells who changed what.
class CompareWindow : public QWidget
{
    Q_OBJECT

public:
    struct Services
    {
        Document &document;
        EditHistory &history;
        const TextTable &texts;
        std::function<QString()> askOpen; ///< the name of a configuration's file; empty: none
        std::function<QString(const QString &proposal)> askSave; ///< that of a table
        std::function<void(const EditPlace &)> goTo;
    };

    explicit CompareWindow(Services services);

    /// Any other configuration, such as what a module holds.
    void compareWith(const Configuration &other, const QString &title);
    void compareWithFile(const QString &fileName);
    /// The present file as it is on the disk.
    void compareWithSaved();
    /// What both were made from; nothing for none.
    void setBase(const std::optional<Configuration> &base, const QString &title = {});

    /// Shows itself. Without another side it takes the saved one where that differs.
    void appear();
    void applyTexts();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    QPushButton *button(const char *name, void (CompareWindow::*clicked)());
    void layOut();
    std::optional<Configuration> read(const QString &fileName);
    void setOther(const std::optional<Configuration> &other, const QString &title);
    void followSaved();
    void chooseOther();
    void chooseBase();
    void dropBase();

    void refreshSoon();
    void refresh();
    void compare();
    void fillFields();
    void fillCommands();
    bool isShown(const ComparedField &field) const;
    bool matches(const QStringList &texts) const;
    void selectFirst();
    void spreadColumns();
    QList<ComparedField> chosenFields() const;
    void showState();
    QString stateText() const;
    QString emptyText() const;

    void goToField();
    void takeOver();
    void keepMine();
    void merge();
    void exportTable();
    void take(const QList<ComparedField> &fields);
    void tell(const QString &line);

    Services m_services;
    std::optional<Configuration> m_other;
    QString m_otherTitle;
    bool m_isSaved = false; ///< the other side is the present file, and follows it
    std::optional<Configuration> m_base;
    QString m_baseTitle;
    QSet<QString> m_kept; ///< conflicts that were decided for what stands here
    QList<ComparedField> m_fields;
    QList<CommandDifference> m_commands;
    QString m_told; ///< what went wrong last
    QString m_done; ///< what was taken over last, until something else is edited
    QTimer m_refresh;

    QLabel *m_otherLabel;
    QLabel *m_baseLabel;
    QLabel *m_state;
    QLineEdit *m_filter;
    QCheckBox *m_stamps;
    QCheckBox *m_conflicts;
    QCheckBox *m_asCommands;
    QTreeWidget *m_tree;
    EmptyNotice *m_empty;
    QPushButton *m_saved;
    QPushButton *m_file;
    QPushButton *m_chooseBase;
    QPushButton *m_dropBase;
    QPushButton *m_goTo;
    QPushButton *m_take;
    QPushButton *m_keep;
    QPushButton *m_merge;
    QPushButton *m_export;
    QPushButton *m_close;
};

} // namespace ktr
