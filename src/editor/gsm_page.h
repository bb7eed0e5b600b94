#pragma once

#include "editor/page.h"

namespace ktr {

/// PIN, station and administrators.
class GsmPage : public Page
{
    Q_OBJECT

public:
    explicit GsmPage(EditorContext &context, QWidget *parent = nullptr);

private:
    QWidget *stationCard();
    QWidget *administratorsCard();
};

} // namespace ktr
