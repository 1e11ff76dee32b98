#pragma once
// The one way a tag write reaches a track: the writer builds "Temp.mp3" in
// the data folder, and only a complete new file takes the old one's place.
// Up to that moment the old file stays as it was, whatever fails.
#include <QString>
#include <functional>

namespace sonorit {

class UiPort;

// The text of the failure message; callers that name the file build their
// own with the path.
QString Tag2_Update_Failed_Text();
QString Tag2_Update_Failed_Title();

// A writer as the tag engine has them: reads `source`, builds `target`.
using Tag2FileWriter = std::function<bool(const QString& source, const QString& target)>;

// Deletes "Temp.mp3" in `dataFolder` (ending in "/"), runs `writer` from
// `path` into it and, on success, puts it in the place of `path`. On any
// failure shows `failureText` titled "Tag update error" (nothing when the text
// is empty), deletes "Temp.mp3", calls `reread` so that what is shown is the
// file as it is, and returns false.
bool Write_Through_Temp(const QString& dataFolder, const QString& path, UiPort& ui, const Tag2FileWriter& writer,
                        const std::function<void()>& reread = {},
                        const QString& failureText = Tag2_Update_Failed_Text());

}  // namespace sonorit
