#pragma once

#include <QDialog>

class QLabel;
class QPushButton;

namespace ktr {

class TextTable;

/// The about window: the program's name and version, whose works are in it, and a way to the system's own
/// information program.
class frmAbout : public QDialog
{
    Q_OBJECT

public:
    /// `texts` must outlive the window.
    explicit frmAbout(const TextTable &texts, QWidget *parent = nullptr);

    /// Takes the captions from the table again.
    void applyTexts();

private:
    void showSystemInformation();

    const TextTable &m_texts;
    QLabel *m_icon;
    QLabel *m_title;
    QLabel *m_version;
    QLabel *m_purpose;
    QLabel *m_others;    ///< above the table of works of others
    QLabel *m_passingOn; ///< below it: what their licences ask of those who pass the program on
    QPushButton *m_systemInformation;
    QPushButton *m_ok;
};

} // namespace ktr
