#include "opmode/window/alarm_sound.h"

#include <QApplication>
#include <QDataStream>
#include <QIODevice>

#include <cmath>
#include <numbers>

namespace ktr {

namespace {

constexpr int samplesPerSecond = 22'050;
constexpr int bytesPerSample = 2;

/// A tone fades in and out, or its ends would click.
void appendTone(QDataStream &to, double hertz, double seconds)
{
    constexpr double loudness = 0.45 * 32'767;
    constexpr double fade = 0.008;
    const int samples = static_cast<int>(seconds * samplesPerSecond);
    for (int i = 0; i < samples; ++i) {
        const double at = static_cast<double>(i) / samplesPerSecond;
        const double envelope = std::min({1.0, at / fade, (seconds - at) / fade});
        const double phase = 2 * std::numbers::pi * hertz * at;
        const double wave = 0.8 * std::sin(phase) + 0.2 * std::sin(2 * phase);
        to << static_cast<qint16>(loudness * std::max(0.0, envelope) * wave);
    }
}

/// What is heard for a priority.
struct Tones
{
    int count;
    double hertz;
    double seconds;
};

Tones tonesOf(AlarmPriority priority)
{
    switch (priority) {
    case AlarmPriority::High:
        return {3, 932, 0.17};
    case AlarmPriority::Medium:
        return {2, 699, 0.23};
    case AlarmPriority::Low:
        break;
    }
    return {1, 466, 0.35};
}

AlarmSound::Play playedTones()
{
    std::map<AlarmPriority, std::shared_ptr<Sound>> sounds;
    for (const AlarmPriority priority : {AlarmPriority::High, AlarmPriority::Medium, AlarmPriority::Low}) {
        sounds[priority] = std::make_shared<Sound>(alarmTones(priority), [] { QApplication::beep(); });
    }
    return [sounds](AlarmPriority priority) { sounds.at(priority)->play(); };
}

} // namespace

QByteArray alarmTones(AlarmPriority priority)
{
    constexpr double pause = 0.08;
    QByteArray samples;
    QDataStream sound(&samples, QIODevice::WriteOnly);
    sound.setByteOrder(QDataStream::LittleEndian);
    const Tones tones = tonesOf(priority);
    for (int tone = 0; tone < tones.count; ++tone) {
        appendTone(sound, tones.hertz, tones.seconds);
        appendTone(sound, 0, pause);
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
    : AlarmSound(centre, timers, playedTones(), parent)
{}

AlarmSound::AlarmSound(const AlarmCentre &centre, Timers &timers, Play play, QObject *parent)
    : QObject(parent), m_centre(centre), m_play(std::move(play)), m_reminder(timers.create())
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
}

AlarmSound::~AlarmSound() = default;

void AlarmSound::sound()
{
    if (const auto priority = m_muted ? std::nullopt : m_centre.sounding()) {
        m_play(*priority);
    }
    m_reminder->start(reminderInterval, [this] { sound(); });
}

} // namespace ktr
