#include "opmode/window/configuration_card.h"

#include "look/outside_texts.h"
#include "opmode/operational_mode.h"

#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <utility>

namespace ktr {

namespace {

QString stationName(const OperationalMode &mode, const QString &kennung)
{
    return mode.tree().find(kennung).data(Qt::EditRole).toString();
}

QString shownPath(const QString &file)
{
    return QDir::toNativeSeparators(file);
}

} // namespace

QString linkConfiguration(OperationalMode &mode, const QString &kennung, const AskForFile &ask)
{
    const QString file = ask(ConfigurationCard::tr("Configurations") + QLatin1String("|*.xml|") +
                             ConfigurationCard::tr("All files") + QLatin1String("|*"));
    const QString name = stationName(mode, kennung); // it may be gone by now
    if (file.isEmpty() || name.isEmpty()) {
        return {};
    }
    const Status kept = mode.configurations().choose(name, file);
    return kept ? ConfigurationCard::tr("%1: the configuration file is %2")
                      .arg(shortenedLine(name), shownPath(file))
                : kept.message();
}

QString unlinkConfiguration(OperationalMode &mode, const QString &kennung)
{
    const QString name = stationName(mode, kennung);
    const StationConfiguration configuration = mode.configuration(kennung);
    if (name.isEmpty() || configuration.origin == StationConfiguration::Origin::None) {
        return ConfigurationCard::tr("No configuration file is linked");
    }
    const bool isChosen = configuration.origin == StationConfiguration::Origin::Chosen;
    StationConfigurations &all = mode.configurations();
    const Status kept = isChosen ? all.forget(name) : all.choose(name, QString());
    return kept ? ConfigurationCard::tr("%1: %2 is not its configuration file any more")
                      .arg(shortenedLine(name), shownPath(configuration.file))
                : kept.message();
}

ConfigurationCard::ConfigurationCard(OperationalMode &mode, AskForFile ask, QWidget *parent)
    : QGroupBox(parent),
      m_mode(mode),
      m_ask(std::move(ask)),
      m_file(new QLabel(this)),
      m_link(new QPushButton(this)),
      m_unlink(new QPushButton(this))
{
    m_file->setObjectName(QStringLiteral("lbl_pic0_configuration"));
    m_file->setWordWrap(true);
    m_file->setTextFormat(Qt::PlainText);
    m_file->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_link->setObjectName(QStringLiteral("Cmd_pic0_link"));
    m_unlink->setObjectName(QStringLiteral("Cmd_pic0_unlink"));
    auto *row = new QHBoxLayout(this);
    row->addWidget(m_file, 1);
    for (QPushButton *button : {m_unlink, m_link}) {
        button->setAutoDefault(false);
        row->addWidget(button);
    }
    connect(m_link, &QPushButton::clicked, this, [this] {
        if (const QString told = linkConfiguration(m_mode, m_kennung, m_ask); !told.isEmpty()) {
            Q_EMIT statusMessage(told);
        }
    });
    connect(m_unlink, &QPushButton::clicked, this,
            [this] { Q_EMIT statusMessage(unlinkConfiguration(m_mode, m_kennung)); });
    connect(&mode.configurations(), &StationConfigurations::changed, this, &ConfigurationCard::refresh);
}

void ConfigurationCard::showStation(const QString &kennung)
{
    m_kennung = kennung;
    refresh();
}

QString ConfigurationCard::origin() const
{
    const StationConfiguration configuration = m_mode.configuration(m_kennung);
    const qsizetype others = configuration.candidates.size() - 1;
    switch (configuration.origin) {
    case StationConfiguration::Origin::None:
        return configuration.candidates.isEmpty()
                   ? tr("No file has its identifier. Names, units and limit values of its inputs are not "
                        "known.")
                   : tr("None, as chosen. Names, units and limit values of its inputs are not known.");
    case StationConfiguration::Origin::Chosen:
        return tr("chosen by hand");
    case StationConfiguration::Origin::Transmitted:
        return tr("transmitted last to its address");
    case StationConfiguration::Origin::Found:
        return others > 0 ? tr("one of %1 with its identifier, the newest names").arg(others + 1)
                          : tr("found by its identifier");
    }
    return {};
}

/// The name first; the folder tells apart what has the same name.
void ConfigurationCard::refresh()
{
    const StationConfiguration configuration = m_mode.configuration(m_kennung);
    const bool isKnown = configuration.origin != StationConfiguration::Origin::None;
    QString text = origin();
    if (isKnown) {
        const QString name = QFileInfo(configuration.file).fileName();
        text = shortenedLine(name) + u' ' + u'\u2013' + u' ' + text;
        if (!configuration.trouble.isEmpty()) {
            text += QLatin1String(": ") + configuration.trouble;
        }
    }
    m_file->setText(text);
    m_file->setToolTip(shownPath(configuration.file));
    m_unlink->setEnabled(isKnown);
}

void ConfigurationCard::applyTexts()
{
    setTitle(tr("Configuration file"));
    m_link->setText(tr("Link..."));
    m_link->setToolTip(tr("Chooses the configuration file of the station; the Configuration Mode opens it"));
    m_unlink->setText(tr("Unlink"));
    m_unlink->setToolTip(tr("The file is not the station's any more; it stays as it is"));
    refresh();
}

} // namespace ktr
