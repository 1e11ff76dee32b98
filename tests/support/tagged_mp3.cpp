#include "tagged_mp3.h"

#include <QFileInfo>

#include "tests/support/tag_bytes.h"
#include "tests/support/temp_env.h"

namespace sonorit::test {

QByteArray taggedMp3(const TrackTags& t, const Mp3Recipe& recipe)
{
    QByteArray body;
    auto add = [&](const char* id, const QString& value) {
        if (!value.isEmpty())
            body += textFrame(id, value.toLatin1());
    };
    add("TPE1", t.artist);
    add("TALB", t.album);
    add("TRCK", t.track);
    add("TIT2", t.title);
    add("TYER", t.year);
    add("TCON", t.genre);
    if (t.various)
        add("TPE2", QStringLiteral("Various Artists"));
    const QByteArray audio = makeMp3(recipe);
    if (audio.isEmpty())
        return {};
    return (body.isEmpty() ? QByteArray() : tag(body)) + audio;
}

bool writeTaggedMp3(const QString& path, const TrackTags& t, const Mp3Recipe& recipe)
{
    const QByteArray bytes = taggedMp3(t, recipe);
    if (bytes.isEmpty())
        return false;
    writeFile(path, bytes);
    return QFileInfo(path).size() == bytes.size();
}

}  // namespace sonorit::test
