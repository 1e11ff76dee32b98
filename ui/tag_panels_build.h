#pragma once
// The controls of FrameTag1, FrameTag2 and FrameMPEG, each under its program
// name, laid out in the group boxes the main window's layout made. Built
// here, driven by TagPanelsView.
#include <QLabel>
#include <array>

class QComboBox;
class QGroupBox;
class QLineEdit;
class QPushButton;

namespace sonorit::ui {

class ClickLabel;

struct TagPanelWidgets {
    // FrameTag1
    QLineEdit* tag1Artist = nullptr;
    QLineEdit* tag1Album = nullptr;
    QLineEdit* tag1Track = nullptr;
    QLineEdit* tag1Year = nullptr;
    QLineEdit* tag1Title = nullptr;
    QLineEdit* tag1Comment = nullptr;
    QComboBox* tag1Genre = nullptr;
    QPushButton* writeTag1 = nullptr;  // Command_Write_Tag1
    QPushButton* copyTagv2 = nullptr;  // CommandCopyTagv2
    // FrameTag2
    QLineEdit* tag2Artist = nullptr;
    QLineEdit* tag2Album = nullptr;
    QLineEdit* tag2Track = nullptr;
    QLineEdit* tag2Year = nullptr;
    QLineEdit* tag2Title = nullptr;
    QLineEdit* tag2Comment = nullptr;
    QLineEdit* tag2GenreText = nullptr;  // Tag2_Text_Genre
    QLineEdit* tag2Time = nullptr;
    QComboBox* tag2Genre = nullptr;
    QComboBox* tag2VA = nullptr;
    ClickLabel* cover = nullptr;  // Cover_Tag
    QPushButton* coverButton = nullptr;  // CommandCover
    QPushButton* albumTag = nullptr;     // CommandAlbumTag
    QPushButton* superTag = nullptr;     // CommandSuperTag
    QPushButton* writeTag2 = nullptr;    // Command_Write_Tag2
    QPushButton* copyTagv1 = nullptr;    // CommandCopyTagv1
    // FrameMPEG, in the order of MpegLabels
    std::array<QLabel*, 9> mpeg{};
};

TagPanelWidgets Build_Tag_Panels(QGroupBox* tag1, QGroupBox* tag2, QGroupBox* mpeg);

// The side of the square Cover_Tag, in device-independent pixels.
constexpr int kTagCoverSize = 104;

}  // namespace sonorit::ui
