#pragma once
// What the tag-engine tests share: headers, a writer run in memory, the frames written.
#include <gtest/gtest.h>

#include <QBuffer>
#include <QDir>
#include <QTemporaryDir>

#include "tags/id3v2_reader.h"
#include "tags/id3v2_writer.h"
#include "tags/mpeg_info.h"
#include "tests/support/mp3_maker.h"
#include "tests/support/tag_bytes.h"
#include "tests/support/temp_env.h"

namespace sonorit::test {

// A fresh installation's options: all on but the two that discard.
inline TagOptions defaultTagOptions()
{
    TagOptions o;
    o.fill(true);
    o[TagOption::DiscardOtherPictures] = o[TagOption::DiscardUnlisted] = false;
    return o;
}

// The file a writer makes of `input`, or "failed".
inline QByteArray written(Tag2Writer writer, TagState& state, const TagOptions& options, const QByteArray& input)
{
    MemorySource src(input);
    QBuffer out;
    out.open(QIODevice::ReadWrite);
    return Write_Tag2(writer, state, options, src, out) ? out.data() : QByteArray("failed");
}

// The frame names of a v2.3 tag in order, an APIC with its picture type:
// "TIT2 APIC:3", or "APIC:?" when the type would lie outside the frame.
inline QString frameIds(const QByteArray& file)
{
    QStringList ids;
    const auto b = [&](qsizetype i) { return qsizetype(quint8(file.at(i))); };
    const qsizetype end = file.startsWith("ID3") ? 10 + (b(6) << 21 | b(7) << 14 | b(8) << 7 | b(9)) : 0;
    for (qsizetype p = 10, size = 0; p + 10 <= qMin(end, file.size()); p += 10 + size) {
        size = b(p + 4) << 24 | b(p + 5) << 16 | b(p + 6) << 8 | b(p + 7);
        ids << QString::fromLatin1(file.mid(p, 4));
        const qsizetype type = file.indexOf('\0', p + 11) + 1;
        if (ids.back() == QLatin1String("APIC"))
            ids.back() += ':' + (type < p + 10 + size ? QString::number(b(type)) : QStringLiteral("?"));
    }
    return ids.join(' ');
}

}  // namespace sonorit::test
