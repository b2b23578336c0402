// SPDX-License-Identifier: MIT
// Whether a file comes from the holder of a private key: an Ed25519 signature over all of its bytes.
#pragma once

#include <QByteArray>
#include <QString>

namespace quoddle {

constexpr qsizetype kPublicKeySize = 32;
constexpr qsizetype kSignatureSize = 64;

enum class SignatureVerdict { good, wrong, malformedKey, malformedSignature, unreadableFile };

/// Key and signature are in Base64. An empty file counts as unsigned.
SignatureVerdict verifySignature(const QString& path, const QByteArray& signature, const QByteArray& publicKey);

} // namespace quoddle
