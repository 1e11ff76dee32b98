#pragma once
// The journal beside the Trackfile ("<Trackfile>.journal"): while a command
// renames or relocates many rows, a record whose length changes is appended
// here, in the Trackfile's own record format, instead of rewriting the whole
// Trackfile for each row. Opening a library puts the journal's records into
// their slots.
#include <QByteArray>
#include <QString>

namespace sonorit {

QString Track_Journal_Path(const QString& trackfile);

// Each complete record of `journal` (a torn last record is ignored) takes the
// place of the slot of its ID in `trackfile`; a later record of one ID wins.
// Applying the same journal twice gives the same bytes.
QByteArray Apply_Track_Journal(const QByteArray& trackfile, const QByteArray& journal);

// Reads the journal of `trackfile`; false when there is none.
bool Read_Track_Journal(const QString& trackfile, QByteArray* journal);

// Writes the Trackfile with its journal applied, durably, then removes the
// journal. True when there was no journal or it is settled now.
bool Settle_Track_Journal(const QString& trackfile);

}  // namespace sonorit
