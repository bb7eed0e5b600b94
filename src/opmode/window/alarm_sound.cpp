#include "opmode/window/alarm_sound.h"

#include "platform/settings_store.h"

#include <QApplication>
#include <QDataStream>
#include <QIODevice>
#include <QPointer>

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>

namespace ktr {

namespace {

constexpr int samplesPerSecond = 22'050;
constexpr int bytesPerSample = 2;
const QString volumeKey = QStringLiteral("soundVolume");

/// So that a step is about as much louder to the ear everywhere.
double amplitudeOf(int volume)
{
    constexpr double most = 0.9 * 32'767;
    const double part = static_cast<double>(volume) / AlarmSound::mostVolume;
    return most * part * part;
}

/// A tone fades in and out, or its ends would click.
void appendTone(QDataStream &to, double hertz, double seconds, double amplitude)
{
    constexpr double fade = 0.008;
    const int samples = static_cast<int>(seconds * samplesPerSecond);
    for (int i = 0; i < samples; ++i) {
        const double at = static_cast<double>(i) / samplesPerSecond;
        const double envelope = std::min({1.0, at / fade, (seconds - at) / fade});
        const double phase = 2 * std::numbers::pi * hertz * at;
        const double wave = 0.8 * std::sin(phase) + 0.2 * std::sin(2 * phase);
        to << static_cast<qint16>(amplitude * std::max(0.0, envelope) * wave);
    }
}

/// What is heard for a priority.
struct Tones
{
    int count;
    double hertz;
    double seconds;
};

Tones tonesOf(std::optional<AlarmPriority> priority)
{
    if (!priority) {
        return {1, 0, 0.1};
    }
    switch (*priority) {
    case AlarmPriority::High:
        return {3, 932, 0.17};
    case AlarmPriority::Medium:
        return {2, 699, 0.23};
    case AlarmPriority::Low:
        break;
    }
    return {1, 466, 0.35};
}

/// A file for each, so that no program reads one that is being replaced by another.
QString fileNameOf(std::optional<AlarmPriority> priority)
{
    return QStringLiteral("alarm") + QString::number(priority ? static_cast<int>(*priority) : 0);
}

AlarmSound::Play playedTones(Timers &timers)
{
    struct Kept
    {
        int volume;
        std::shared_ptr<Sound> sound;
    };
    auto kept = std::make_shared<std::map<QString, Kept>>();
    return [kept, &timers](std::optional<AlarmPriority> tones, int volume, const Sound::Told &told) {
        const QString name = fileNameOf(tones);
        const auto found = kept->find(name);
        const bool isOther = found == kept->end() || found->second.volume != volume;
        if (isOther && (found == kept->end() || !found->second.sound->isPlaying())) { // it is waited for
            (*kept)[name] = {volume, std::make_shared<Sound>(timers, name, alarmTones(tones, volume))};
        }
        const std::shared_ptr<Sound> sound = kept->at(name).sound;
        sound->play(told);
    };
}

int keptVolume()
{
    bool ok = false;
    const int volume =
        SettingsStore().GetSetting(settingsOwner, settings_sections::operationalMode, volumeKey).toInt(&ok);
    return ok ? std::clamp(volume, AlarmSound::leastVolume, AlarmSound::mostVolume) : AlarmSound::usualVolume;
}

} // namespace

QByteArray alarmTones(std::optional<AlarmPriority> priority, int volume)
{
    constexpr double pause = 0.08;
    QByteArray samples;
    QDataStream sound(&samples, QIODevice::WriteOnly);
    sound.setByteOrder(QDataStream::LittleEndian);
    const Tones tones = tonesOf(priority);
    for (int tone = 0; tone < tones.count; ++tone) {
        appendTone(sound, tones.hertz, tones.seconds, amplitudeOf(volume));
        appendTone(sound, 0, pause, 0);
    }

    QByteArray file;
    QDataStream wav(&file, QIODevice::WriteOnly);
    wav.setByteOrder(QDataStream::LittleEndian);
    const auto size = static_cast<quint32>(samples.size());
    wav.writeRawData("RIFF", 4);
    wav << (36 + size);
    wav.writeRawData("WAVEfmt ", 8);
    wav << quint32(16) << quint16(1) << quint16(1) << quint32(samplesPerSecond)
        << quint32(samplesPerSecond * bytesPerSample) << quint16(bytesPerSample)
        << quint16(8 * bytesPerSample);
    wav.writeRawData("data", 4);
    wav << size;
    return file + samples;
}

AlarmSound::AlarmSound(const AlarmCentre &centre, Timers &timers, QObject *parent)
    : AlarmSound(centre, timers, playedTones(timers), parent)
{}

AlarmSound::AlarmSound(const AlarmCentre &centre, Timers &timers, Play play, QObject *parent)
    : QObject(parent),
      m_centre(centre),
      m_play(std::move(play)),
      m_reminder(timers.create()),
      m_try(timers.create()),
      m_volume(keptVolume())
{
    connect(&centre, &AlarmCentre::attention, this, [this](const AlarmNews &news) {
        if (news.sounds) {
            sound();
        }
    });
    connect(&centre, &AlarmCentre::changed, this, [this] {
        if (m_centre.unacknowledged() == 0) {
            m_reminder->stop();
        }
    });
    if (centre.unacknowledged() > 0) { // told before this was there
        sound();
    }
    m_try->start(firstTry, [this] { tryWhetherHeard(); });
}

AlarmSound::~AlarmSound() = default;

void AlarmSound::setVolume(int volume)
{
    const int wanted = std::clamp(volume, leastVolume, mostVolume);
    if (wanted == m_volume) {
        return;
    }
    m_volume = wanted;
    SettingsStore().SaveSetting(settingsOwner, settings_sections::operationalMode, volumeKey,
                                QString::number(m_volume));
}

void AlarmSound::test(AlarmPriority priority, const Sound::Told &told)
{
    play(priority, told);
}

void AlarmSound::sound()
{
    if (const auto priority = m_muted ? std::nullopt : m_centre.sounding()) {
        play(priority, [](const SoundOutcome &) {});
    }
    m_reminder->start(reminderInterval, [this] { sound(); });
}

void AlarmSound::play(std::optional<AlarmPriority> tones, const Sound::Told &told)
{
    const QPointer<AlarmSound> self(this);
    m_play(tones, m_volume, [this, self, tones, told](const SoundOutcome &outcome) {
        if (!self) {
            return;
        }
        if (!outcome.played && tones) {
            QApplication::beep();
        }
        if (outcome.played) {
            m_try->stop();
        } else {
            m_try->start(reminderInterval, [this] { tryWhetherHeard(); });
        }
        if (m_trouble != outcome.played.message()) {
            m_trouble = outcome.played.message();
            Q_EMIT troubleChanged();
        }
        told(outcome);
    });
}

/// Where an alarm sounds meanwhile, that tells it, too.
void AlarmSound::tryWhetherHeard()
{
    play(std::nullopt, [](const SoundOutcome &) {});
}

} // namespace ktr
