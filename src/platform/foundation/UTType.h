// SPDX-License-Identifier: MIT
// Uniform type identifiers: what kinds of thing there are and which is a kind of which.
// One decision: the kinds are rows of data (UTTypeTable.cpp), to which bundles may add at run time; a MIME type without a row gets an
// identifier of its own ("dyn.…") that conforms to whatever its ancestors stand for. It looks at no file: that is FileTypes. Any thread.
// Identifiers, extensions and MIME types are compared without case, the four characters of an OSType with it.
#pragma once

#include <QStringList>
#include <QVariantMap>

namespace quoddle {

inline const QString kUTTagClassFilenameExtension = QStringLiteral("public.filename-extension");
inline const QString kUTTagClassMIMEType = QStringLiteral("public.mime-type");
inline const QString kUTTagClassOSType = QStringLiteral("com.apple.ostype");

/// Every type conforms to itself; one that nobody has declared to nothing else.
bool UTTypeConformsTo(const QString& type, const QString& conformsTo);
bool UTTypeIsDeclared(const QString& type);
/// The type itself, then all that it conforms to, the nearest first.
QStringList UTTypeCopyConformances(const QString& type);
/// Extensions come without their dot. Empty when no declared type has the tag; a MIME type that the system knows always has one.
QString UTTypeCreatePreferredIdentifierForTag(const QString& tagClass, const QString& tag);
/// The same, for tags that several types share.
QStringList UTTypeCreateAllIdentifiersForTag(const QString& tagClass, const QString& tag);
/// Adds the "UTExportedTypeDeclarations" and "UTImportedTypeDeclarations" of a bundle's info dictionary. What is declared already stays as
/// it is, and so do the extensions of others; entries that are not understood are passed over.
void UTTypeDeclareTypesOfBundle(const QVariantMap& infoDictionary);

} // namespace quoddle
