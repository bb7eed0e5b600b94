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

std::function<void()> playedTones()
{
    return [tones = std::make_shared<Sound>(alarmTones(), [] { QApplication::beep(); })] { tones->play(); };
}

} // namespace

QByteArray alarmTones()
{
    QByteArray samples;
    QDataStream sound(&samples, QIODevice::WriteOnly);
    sound.setByteOrder(QDataStream::LittleEndian);
    for (int turn = 0; turn < 2; ++turn) {
        appendTone(sound, 932, 0.17);
        appendTone(sound, 699, 0.23);
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

AlarmSound::AlarmSound(const AlarmCentre &centre, Timers &timers, std::function<void()> play, QObject *parent)
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
    if (!m_muted) {
        m_play();
    }
    m_reminder->start(reminderInterval, [this] { sound(); });
}

} // namespace ktr
