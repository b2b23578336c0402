// SPDX-License-Identifier: MIT
// Packs a bundle into a zip archive from which unpackBundle() makes the same bundle again.
//
// Decision: the same bundle makes the same archive, byte for byte, wherever and whenever it is packed: entries are sorted, and have neither
// times nor owners. Of the permissions only the one to be executed is kept, as in unpacking.
#pragma once

#include <QString>

namespace quoddle {

/// Writes beside `archive` and renames; an ordinary file that was there is replaced. Returns an error as a sentence for the command line,
/// after which nothing is left behind; empty when there is none. Errors are, among others: links that lead out of the bundle, things that
/// are no files, names that unpackBundle() refuses, and more than it takes. Accents in names are stored in their composed form (NFC), the
/// one in which texts of scripts are.
QString packBundle(const QString& bundle, const QString& archive);

} // namespace quoddle
