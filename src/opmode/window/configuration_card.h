#pragma once

#include <QGroupBox>

#include <functional>

class QLabel;
class QPushButton;

namespace ktr {

class OperationalMode;

/// Asks for a file to read; empty for "cancel". A filter is made of pairs "description|patterns".
using AskForFile = std::function<QString(const QString &filter)>;

/// Asks which configuration file is a station's, and keeps the choice. Gives what is to be told of it; empty
/// when the user changed his mind.
QString linkConfiguration(OperationalMode &mode, const QString &kennung, const AskForFile &ask);
/// Takes the user's choice back; what was found by itself is left out from now on.
QString unlinkConfiguration(OperationalMode &mode, const QString &kennung);

/// Which configuration file is a station's, and whether it was chosen or found.
class ConfigurationCard : public QGroupBox
{
    Q_OBJECT

public:
    ConfigurationCard(OperationalMode &mode, AskForFile ask, QWidget *parent = nullptr);

    void showStation(const QString &kennung);
    void applyTexts();

Q_SIGNALS:
    /// A line for the status bar.
    void statusMessage(const QString &line);

private:
    void refresh();
    QString origin() const;

    OperationalMode &m_mode;
    AskForFile m_ask;
    QString m_kennung;
    QLabel *m_file;
    QPushButton *m_link;
    QPushButton *m_unlink;
};

} // namespace ktr
