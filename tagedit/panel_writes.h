#pragma once
// What the buttons of the tag panels do: the two writes, the copies between
// the panels, the genre combo and the choice of a new cover. Nothing reaches
// a file before a write button.
#include <QString>

#include "tagedit/tag_panels.h"

namespace sonorit {

// The path the write buttons work on: the selected library row for
// Tag_Source 1, the playlist entry for 2; "" when nothing is selected.
QString Panel_Write_Path(const PanelContext& p);

enum class WriteOutcome {
    NothingSelected,  // the focus went to the list
    Written,
    Failed,  // reported; the file is as it was and the panels show it
};

// The buttons. Each takes its path from the list of Tag_Source, writes, and
// lets the library row, its Trackfile record and the playlist rows follow.
WriteOutcome Command_Write_Tag1(PanelContext& p);
WriteOutcome Command_Write_Tag2(PanelContext& p);

// The same writes for a path the caller chose (selection tagging): the
// panels as they stand go to the file, then row, record and playlist follow.
bool Write_Panel_Tag1(PanelContext& p, const QString& path);
bool Write_Panel_Tag2(PanelContext& p, const QString& path);

// CommandCopyTagv2: the Tag1 boxes from the Tag2 boxes (the Tag1 comment
// stays). CommandCopyTagv1: the other way; a Tag1 genre of 12, 148 or 149
// leaves the Tag2 genre as it was.
void CommandCopyTagv2(TagPanels& panels);
void CommandCopyTagv1(TagPanels& panels);

// Tag2_Combo_Genre Click on `entry`: the box shows its name; 149 opens the
// box empty and asks for the focus there.
void Tag2_Combo_Genre_Click(PanelContext& p, int entry);

// The JPEG dialog of the tag windows: titled "Open", "JPEG Image Files
// (*.jpg)", starting in the folder last used (setting Folders/Art). Returns
// the chosen file when it exists and ends in ".jpg" (any case), its folder
// then remembered; "" otherwise.
QString Choose_Cover_File(TagEditContext& c);

// A chosen picture becomes the panel's new cover: Cover_File of the Tag2
// fields, a copy as "Cover.jpg" in the data folder, shown in Cover_Tag.
// False with a message when the file is no JPEG picture or cannot be copied;
// the cover shown stays then.
bool Take_Cover_File(PanelContext& p, const QString& file);

// CommandCover Click: the dialog, then Take_Cover_File.
bool CommandCover(PanelContext& p);

}  // namespace sonorit
