#include "printout/printout.h"

#include "config/configuration_file.h"
#include "platform/files.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFileInfo>
#include <QPainter>
#include <QPdfWriter>
#include <QRawFont>

namespace ktr {

namespace {

constexpr int configurationTitle = 10;

QString programName()
{
    return QLatin1String("KTRconfig ") + programVersion();
}

/// Whether there is a real font behind it: without any, the toolkit draws boxes and lists families all the
/// same.
bool hasGlyphs(const QFont &font)
{
    return !QRawFont::fromFont(font).fontTable("head").isEmpty();
}

} // namespace

Printout::Printout(const Configuration &configuration, const TextTable &texts, const PrintoutOptions &options)
{
    QStringList names{configuration.gsm.stationId.trimmed(), QFileInfo(options.fileName).fileName()};
    names.removeAll(QString());
    const QString title = options.title.isEmpty() ? texts.text(configurationTitle) : options.title;
    m_title = QString(title + u' ' + names.value(0)).trimmed();
    m_pages =
        layOut(m_title, options.front + printContent(configuration, texts, options.locale, options.entries),
               {names.join(u"  ·  "), programName(),
                options.locale.toString(options.now.date(), QLocale::ShortFormat)});
}

void Printout::paintPage(QPainter &painter, int page) const
{
    if (page < 0 || page >= pageCount()) {
        return;
    }
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing); // or a screen drops the thin rules
    painter.scale(1 / layoutUnitsPerPoint, 1 / layoutUnitsPerPoint);
    for (const auto &[area, color] : m_pages[page].fills) {
        painter.fillRect(area, color);
    }
    for (const PrintedText &text : m_pages[page].texts) {
        painter.setFont(text.font);
        painter.setPen(text.color);
        painter.drawText(text.baseline, text.text);
    }
    painter.restore();
}

QString Printout::pageText(int page) const
{
    QStringList texts;
    if (page >= 0 && page < pageCount()) {
        for (const PrintedText &text : m_pages[page].texts) {
            texts += text.text;
        }
    }
    return texts.join(u' ');
}

Status Printout::writePdf(const QString &path) const
{
    if (!hasGlyphs(m_pages.front().texts.front().font)) {
        return fileFailure(path, QCoreApplication::translate("Files", "not written: no font is installed"));
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF()));
        constexpr int unitsPerInch = static_cast<int>(layoutUnitsPerPoint) * 72;
        writer.setResolution(unitsPerInch);
        writer.setTitle(m_title);
        writer.setCreator(programName());
        QPainter painter(&writer);
        painter.scale(layoutUnitsPerPoint, layoutUnitsPerPoint);
        for (int page = 0; page < pageCount(); ++page) {
            if (page > 0) {
                writer.newPage();
            }
            paintPage(painter, page);
        }
    }
    return replaceFile(path, bytes, Readers::AsUsual);
}

} // namespace ktr
