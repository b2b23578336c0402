// SPDX-License-Identifier: MIT
// Uniform type identifiers: which kinds of things there are, and which kind conforms to which.
// Decision: the kinds are rows of data (UTTypeTable.cpp), to which bundles add at run time. A MIME type without a row gets an identifier of
// its own ("dyn.…"), which conforms to the types of its ancestors. Files are the business of FileTypes. Any thread.
// Identifiers, extensions and MIME types are compared without regard to case, the four characters of an OSType with it.
#pragma once

#include <QStringList>
#include <QVariantMap>

namespace quoddle {

inline const QString kUTTagClassFilenameExtension = QStringLiteral("public.filename-extension");
inline const QString kUTTagClassMIMEType = QStringLiteral("public.mime-type");
inline const QString kUTTagClassOSType = QStringLiteral("com.apple.ostype");

/// Every type conforms to itself. A type that nobody has declared conforms to nothing else.
bool UTTypeConformsTo(const QString& type, const QString& conformsTo);
bool UTTypeIsDeclared(const QString& type);
/// The type itself and all types that it conforms to, nearest first.
QStringList UTTypeCopyConformances(const QString& type);
/// Extensions are given without their dot. Empty when no declared type has the tag; a MIME type that the system knows always has one.
QString UTTypeCreatePreferredIdentifierForTag(const QString& tagClass, const QString& tag);
/// All identifiers, for tags that several types share.
QStringList UTTypeCreateAllIdentifiersForTag(const QString& tagClass, const QString& tag);
/// Adds the "UTExportedTypeDeclarations" and "UTImportedTypeDeclarations" of a bundle's info dictionary. Existing declarations, and the
/// extensions of other types, stay unchanged; malformed entries are skipped.
void UTTypeDeclareTypesOfBundle(const QVariantMap& infoDictionary);

} // namespace quoddle
