// SPDX-License-Identifier: MIT
#include "platform/delivery/Signature.h"

#include <memory>

#include <openssl/evp.h>

#include <QFile>

namespace quoddle {

namespace {

template<auto release>
struct Releaser {
    template<class T>
    void operator()(T* object) const {
        release(object);
    }
};

using Key = std::unique_ptr<EVP_PKEY, Releaser<&EVP_PKEY_free>>;
using Context = std::unique_ptr<EVP_MD_CTX, Releaser<&EVP_MD_CTX_free>>;

/// The bytes of a Base64 text; empty unless it is Base64 and has that size.
QByteArray decoded(const QByteArray& base64, qsizetype size) {
    const auto result = QByteArray::fromBase64Encoding(base64.trimmed(), QByteArray::AbortOnBase64DecodingErrors);
    return result && (*result).size() == size ? *result : QByteArray();
}

const unsigned char* bytesOf(const QByteArray& array) {
    return reinterpret_cast<const unsigned char*>(array.constData());
}

} // namespace

SignatureVerdict verifySignature(const QString& path, const QByteArray& signature, const QByteArray& publicKey) {
    const QByteArray keyBytes = decoded(publicKey, kPublicKeySize), signatureBytes = decoded(signature, kSignatureSize);
    if (keyBytes.isEmpty())
        return SignatureVerdict::malformedKey;
    if (signatureBytes.isEmpty())
        return SignatureVerdict::malformedSignature;
    QFile file(path);
    const uchar* content = file.open(QIODevice::ReadOnly) && file.size() > 0 ? file.map(0, file.size()) : nullptr;
    if (!content)
        return SignatureVerdict::unreadableFile;
    const Key key(EVP_PKEY_new_raw_public_key(EVP_PKEY_ED25519, nullptr, bytesOf(keyBytes), static_cast<std::size_t>(keyBytes.size())));
    const Context context(EVP_MD_CTX_new());
    if (!key || !context || EVP_DigestVerifyInit(context.get(), nullptr, nullptr, nullptr, key.get()) != 1)
        return SignatureVerdict::malformedKey;
    const int answer = EVP_DigestVerify(context.get(), bytesOf(signatureBytes), static_cast<std::size_t>(signatureBytes.size()), content,
                                        static_cast<std::size_t>(file.size()));
    return answer == 1 ? SignatureVerdict::good : SignatureVerdict::wrong;
}

} // namespace quoddle
