#pragma once

#include <QImage>

namespace ktr {

class CurvesCanvas;
class CurvesLegend;

/// The curves as they are shown, with a title above and the list of them below, twice as fine as on the
/// screen: for a file.
QImage curvesPicture(CurvesCanvas &canvas, const CurvesLegend &legend, const QString &title);
/// The same on one page.
QByteArray curvesPdf(CurvesCanvas &canvas, const CurvesLegend &legend, const QString &title);

} // namespace ktr
