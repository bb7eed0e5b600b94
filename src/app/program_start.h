#pragma once

#include "app/command_line.h"
#include "app/interface_language.h"
#include "app/take_over.h"

namespace ktr {

/// The start of the program until it may read files: settings and language, and the other instance that may
/// be running, whose end is waited for.
class ProgramStart : public QObject
{
    Q_OBJECT

public:
    /// `instanceName` is that by which instances find each other; empty for the name of this user. `works`
    /// tells the others what this one is doing.
    ProgramStart(const Environment &environment, Timers &timers, const QString &instanceName,
                 const TextTable &texts, InterfaceLanguage &language, std::function<Works()> works);

    /// Who `isWelcomed` and has chosen no language yet gets that of the system for this run, where there are
    /// texts of it; the settings get it with keepProposed().
    void begin(const CommandLine &options, bool isWelcomed, const QStringList &systemLanguages);
    /// Whether the language holds for this run alone.
    bool isLanguageOfRun() const { return m_isLanguageOfRun; }
    /// The user goes on in the language that was proposed, if one was.
    void keepProposed();
    /// The user has chosen a language himself: none is proposed any more.
    void proposeNone();
    /// Whether done() was emitted.
    bool isDone() const { return m_isDone; }
    /// What the user should know about settings and other instances; complete when it is done.
    QStringList troubles() const;
    void stopWaiting() { m_wait.stop(); }

Q_SIGNALS:
    /// The window should have this title while another instance is waited for.
    void titleWanted(const QString &title);
    void statusMessage(const QString &line);
    /// Files may be read. A remark is to be shown in a box.
    void done(const QString &remark);
    /// The user keeps the other instance: this one has to end.
    void givenUp();
    /// A newer instance wants to see this one's windows, or to take its place; its user has agreed that work
    /// ends.
    void frontRequested();
    void closeRequested();

private:
    QString languageOfSystem(const CommandLine &options, bool isFirst, const QStringList &spoken) const;
    void finish(const QString &remark);
    void giveUp();
    static QString tookPlace();

    InterfaceLanguage &m_language;
    SingleInstance m_instance;
    QTimer m_wait; ///< Tmr_wait
    TakeOver m_takeOver;
    QStringList m_settingsTroubles;
    QStringList m_wanted; ///< of the command line, in words
    bool m_isDone = false;
    bool m_isLanguageOfRun = false;
    QString m_proposed; ///< the language of the system, while the user has chosen none
};

} // namespace ktr
