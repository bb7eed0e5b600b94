#pragma once

#include "editor/editor_context.h"
#include "editor/entry_model.h"

namespace ktr {

/// All switch points: target, condition, value.
class SwitchPointModel : public EntryModel
{
    Q_OBJECT

public:
    explicit SwitchPointModel(QObject *parent = nullptr);

    void setTexts(const EditorContext &context);
    void show(const EditorContext &context);

    // The items of the page's lists, as last shown.
    const QStringList &targets() const { return m_targets; }
    const QStringList &types() const { return m_types; }
    const QStringList &limitValues() const { return m_limitValues; }
    /// What a type does, where its item reads like another one; empty elsewhere.
    QString meaning(int type) const { return m_meanings.value(type); }
    /// The whole name of an administrator whose item does not tell him from others; empty elsewhere.
    QString wholeTarget(int position) const { return m_wholeTargets.value(position); }

private:
    struct Start
    {
        QString stored;
        QString shown;
    };

    QStringList targetItems(const EditorContext &context);
    QString target(const SwitchPoint &point, const ChannelNames &names) const;
    QString condition(const SwitchPoint &point, const QString &start, const TextTable &texts) const;

    std::array<Start, SwitchPoint::count> m_starts; ///< dates are slow to format for each keystroke
    std::array<bool, 6> m_named{};                  ///< administrators whose names were ever given
    QStringList m_targets;
    QStringList m_wholeTargets; ///< by position
    QStringList m_types;
    QStringList m_meanings; ///< by type
    QStringList m_limitValues;
};

} // namespace ktr
