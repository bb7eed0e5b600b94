#pragma once

#include "opmode/window/overview/tile_contents.h"
#include "opmode/window/overview/tile_layout.h"
#include "opmode/window/overview/tile_painter.h"
#include "opmode/window/overview/tile_sizes.h"

#include <QListView>

namespace ktr {

class OperationalMode;
class OverviewModel;
class ViewActivity;

/// The tiles of all stations, under headings where the model has some. They keep their places while the user
/// points at them. It is a list view, which assistive tools know, and places its rows itself.
class OverviewView : public QListView
{
    Q_OBJECT

public:
    OverviewView(const OperationalMode &mode, OverviewModel &model, QWidget *parent = nullptr);

    /// The model moves nothing while the user is at work here, and has its descriptions from here.
    void follow();
    /// On a wall no tile is chosen and nothing is scrolled by hand; fitting tiles may be cells.
    void setOnWall(bool isOnWall);
    bool isOnWall() const { return m_isOnWall; }
    bool showsCells() const;
    /// Whether nothing needs to be scrolled to be seen.
    bool showsAll() const;
    /// Is as high as so many tiles with name and state need, in so many rows at most. Few are as wide as
    /// there is room.
    void showFirst(int tiles, int mostRows);

    /// A place in tileLevels(); the largest is 0.
    int level() const { return m_level; }
    void setLevel(int level);
    /// The level is the largest at which all stations are seen at once, and the tiles are stretched to fill
    /// the page. So it is until a level is chosen.
    void setFitting(bool isFitting);
    bool isFitting() const { return m_isFitting; }
    /// Up to four channels that are shown of each station; empty for those that have names or values.
    void setChannels(const QList<int> &channels);

    const OverviewModel &stations() const { return m_model; }
    bool isInUse() const;
    QString chosen() const; ///< its key, empty for none
    /// Chooses these alone, as far as they are shown; the tile of the current one gets the focus. Scrolls
    /// nothing.
    void chooseStations(const QStringList &stations, const QString &current);
    /// The first station that is shown, if there is one.
    void chooseFirst();
    /// The keys of those that are chosen, in the order of the tiles.
    QStringList chosenStations() const;

    QSize tileSize() const { return m_measures.tile; }
    QRect visualRect(const QModelIndex &index) const override;
    QModelIndex indexAt(const QPoint &point) const override;
    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;
    void doItemsLayout() override;

Q_SIGNALS:
    /// The user chose other stations, or none, or what was chosen is no longer shown, or is again.
    void choiceChanged();
    /// It is to be shown in the tree.
    void stationWanted(const QString &kennung);
    /// The user typed what may begin a search.
    void typed(const QString &text);
    void levelChanged();
    /// A menu about the chosen station is wanted at a place on the screen.
    void menuWanted(const QPoint &place);
    /// Other groups are folded.
    void foldingChanged();

protected:
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    bool viewportEvent(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void updateGeometries() override;
    void scrollContentsBy(int x, int y) override;
    int horizontalOffset() const override { return 0; }
    int verticalOffset() const override;
    void setSelection(const QRect &where, QItemSelectionModel::SelectionFlags flags) override;
    QRegion visualRegionForSelection(const QItemSelection &selection) const override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;

private:
    void noteChoice();
    void chooseNoted();
    TileLevel tiles() const;
    void fitTiles();
    void takeLevel(int level);
    void fit();
    int fittingLevel() const;
    TileSizes sizes() const;
    TileSizes::Rows rows() const;
    const TileLayout &places() const;
    void paintRow(QPainter &painter, const QRect &where, int row) const;
    std::optional<int> chosenHeading() const;
    void fold(int group, bool isFolded);
    bool foldByKey(const QKeyEvent &event);

    const OperationalMode &m_mode;
    OverviewModel &m_model;
    TileContents m_contents;
    ViewActivity *m_activity;
    int m_level = 0;
    bool m_isFitting = true;
    bool m_wasFitting = true; ///< in the window
    int m_levelInWindow = 0;
    bool m_isOnWall = false;
    bool m_isStrip = false; ///< some rows of tiles with name and state
    int m_mostColumns = 0;  ///< of those; 0: as many as there is room for
    TileLayout::Measures m_measures;
    mutable std::optional<TilePainter> m_painter; ///< of the present level, font and palette
    struct Choice
    {
        QStringList stations;
        QString current;
    };
    Choice m_chosen;           ///< before the rows came anew
    Choice m_hiddenChoice;     ///< was chosen before a search or a fold hid all of it
    bool m_isChoosing = false; ///< not the user
    bool m_areSeveralChosen = false;
    std::optional<int> m_chosenHeading; ///< likewise
    int m_pointed = -1;                 ///< the row under the mouse
    mutable TileLayout m_places;
    mutable bool m_arePlacesStale = true;
};

} // namespace ktr
