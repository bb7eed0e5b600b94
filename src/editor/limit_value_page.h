#pragma once

#include "editor/page.h"

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLineEdit;
class QStackedWidget;

namespace ktr {

class ChannelLabel;
class EntryChooser;
class LimitValueModel;

/// The twenty limit values, one at a time: 1 to 16 watch a channel, 17 to 20 combine those.
class LimitValuePage : public Page
{
    Q_OBJECT

public:
    explicit LimitValuePage(EditorContext &context, QWidget *parent = nullptr);

    void entered() override;
    bool hasEntries() const override { return true; }
    void showEntry(int entry) override;
    int shownEntry() const override { return entry(); }
    EntryChooser *entryChooser() const override { return m_chooser; }
    void setProblems(const QList<Problem> &problems) override;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *entryFrame();
    QWidget *thresholdPart();
    QWidget *referencePart();
    QWidget *recipientsPart();
    QLayout *notificationLine();
    QLayout *repetitionLine();

    int entry() const;
    qsizetype commandLength() const;
    const LimitValue &shown() const;
    FieldRef field(Member<LimitValue> member) const;
    ChannelLabel *fixedLabel(const QString &name);

    void alignCaptions();

    void load();
    void fillDefaults();
    void showUnits();
    void showRecipients();
    void showOverview();

    LimitValueModel *m_model;
    EntryChooser *m_chooser;
    QGroupBox *m_frame = nullptr;
    QStackedWidget *m_kinds = nullptr; ///< what differs between thresholds and combinations
    QComboBox *m_channel = nullptr;
    ChannelLabel *m_limitUnit = nullptr;
    ChannelLabel *m_hysteresisUnit = nullptr;
    QLabel *m_delayMeaning = nullptr;
    QLineEdit *m_interval = nullptr;
    std::vector<QLabel *> m_captions;
    std::vector<QCheckBox *> m_recipients;
    std::vector<QCheckBox *> m_references;
};

} // namespace ktr
