// SPDX-License-Identifier: MIT
// Whether a file comes from whoever holds the private half of a key: Ed25519 over all of its bytes.
#pragma once

#include <QByteArray>
#include <QString>

namespace quoddle {

constexpr qsizetype kPublicKeySize = 32;
constexpr qsizetype kSignatureSize = 64;

enum class SignatureVerdict { good, wrong, malformedKey, malformedSignature, unreadableFile };

/// Key and signature in Base64. An empty file is signed by nobody.
SignatureVerdict verifySignature(const QString& path, const QByteArray& signature, const QByteArray& publicKey);

} // namespace quoddle
