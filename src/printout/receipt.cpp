#include "printout/receipt.h"

#include "platform/files.h"
#include "printout/printout.h"
#include "transmissions/held_configuration.h"
#include "transmissions/transmission_texts.h"

#include <QCoreApplication>
#include <QJsonDocument>

namespace ktr {

namespace {

bool isPdf(const QString &path)
{
    return path.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive);
}

PrintSection factsSection(const RememberedTransmission &transmission)
{
    constexpr double nameWidth = 45;
    PrintTable table{{{{}, nameWidth, PrintColumn::Style::Caption}, {{}, printWidth - nameWidth}}, {}};
    for (const auto &[name, value] : transmissionFacts(transmission)) {
        table.rows += QStringList{name, value};
    }
    return {QCoreApplication::translate("Transmissions", "Transmission"), {table}};
}

PrintSection commandsSection(const QList<TransmissionStepRow> &steps)
{
    constexpr double stepWidth = 12;
    constexpr double timeWidth = 38;
    constexpr double outcomeWidth = 28;
    PrintTable table{
        {{QCoreApplication::translate("Transmissions", "Step"), stepWidth, PrintColumn::Style::Number},
         {QCoreApplication::translate("Transmissions", "Command"),
          printWidth - stepWidth - timeWidth - outcomeWidth},
         {QCoreApplication::translate("Transmissions", "Outcome"), outcomeWidth},
         {QCoreApplication::translate("Transmissions", "Time"), timeWidth}},
        {}};
    for (const TransmissionStepRow &step : steps) {
        table.rows += QStringList{QString::number(step.step), step.command, outcomeText(step.outcome),
                                  transmissionTime(step.at)};
    }
    return {QCoreApplication::translate("Transmissions", "Commands"), {table}};
}

} // namespace

bool isReceiptName(const QString &path)
{
    return isPdf(path) || path.endsWith(QLatin1String(".json"), Qt::CaseInsensitive);
}

Printout receiptPages(const RememberedTransmission &transmission, const Configuration &configuration,
                      const TextTable &texts, const Environment &environment)
{
    return {configuration,
            texts,
            {.fileName = transmission.row.file,
             .locale = environment.locale,
             .now = environment.now(),
             .title = QCoreApplication::translate("Transmissions", "Transmission to"),
             .front = {factsSection(transmission), commandsSection(transmission.steps)}}};
}

Status writeReceipt(const QString &path, const RememberedTransmission &transmission, const TextTable &texts,
                    const Environment &environment)
{
    if (!isPdf(path)) {
        QJsonObject object = transmissionJson(transmission);
        object.insert(QStringLiteral("configuration"), withoutPinElement(transmission.row.configuration));
        return replaceFile(path, QJsonDocument(object).toJson(), Readers::AsUsual);
    }
    Configuration configuration;
    if (Status read = configurationOf(transmission.row, configuration, environment); !read) {
        return fileFailure(path, read.message());
    }
    return receiptPages(transmission, configuration, texts, environment).writePdf(path);
}

} // namespace ktr
