// SPDX-License-Identifier: MIT
#include "platform/delivery/Signature.h"

#include <memory>

#include <gtest/gtest.h>
#include <openssl/evp.h>

#include <QFile>
#include <QTemporaryDir>

using namespace quoddle;
using namespace Qt::StringLiterals;

namespace {

struct KeyPair {
    KeyPair() : key(EVP_PKEY_Q_keygen(nullptr, nullptr, "ED25519"), &EVP_PKEY_free) {}

    QByteArray publicKey() const {
        unsigned char bytes[32];
        std::size_t size = sizeof bytes;
        EVP_PKEY_get_raw_public_key(key.get(), bytes, &size);
        return QByteArray(reinterpret_cast<char*>(bytes), static_cast<qsizetype>(size)).toBase64();
    }
    QByteArray signature(const QByteArray& content) const {
        unsigned char bytes[64];
        std::size_t size = sizeof bytes;
        EVP_MD_CTX* context = EVP_MD_CTX_new();
        EVP_DigestSignInit(context, nullptr, nullptr, nullptr, key.get());
        EVP_DigestSign(context, bytes, &size, reinterpret_cast<const unsigned char*>(content.constData()),
                       static_cast<std::size_t>(content.size()));
        EVP_MD_CTX_free(context);
        return QByteArray(reinterpret_cast<char*>(bytes), static_cast<qsizetype>(size)).toBase64();
    }

    std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key;
};

TEST(Signature, IsOverEveryByteAndOfOneKey) {
    QTemporaryDir place;
    const KeyPair maker, other;
    const QByteArray content(100'000, 'a');
    const QByteArray signature = maker.signature(content), key = maker.publicKey();
    QByteArray changed = content, spoiled = QByteArray::fromBase64(signature);
    changed[99'999] = 'b';
    spoiled[63] = static_cast<char>(spoiled[63] ^ 1);
    using enum SignatureVerdict;
    const struct {
        const char* what;
        QByteArray content, signature, key;
        SignatureVerdict verdict;
    } cases[] = {
        {"as it should be", content, signature, key, good},
        {"with the line end of a program", content, signature + "\n", key + "\n", good},
        {"the last byte changed", changed, signature, key, wrong},
        {"cut off", content.left(99'999), signature, key, wrong},
        {"longer", content + "a", signature, key, wrong},
        {"nothing", {}, signature, key, unreadableFile},
        {"the key of another", content, signature, other.publicKey(), wrong},
        {"signed by another", content, other.signature(content), key, wrong},
        {"a spoiled signature", content, spoiled.toBase64(), key, wrong},
        {"no signature", content, {}, key, malformedSignature},
        {"a short signature", content, QByteArray(63, 'x').toBase64(), key, malformedSignature},
        {"no Base64", content, "?" + signature.mid(1), key, malformedSignature},
        {"no key", content, signature, {}, malformedKey},
        {"a short key", content, signature, QByteArray(31, 'x').toBase64(), malformedKey},
    };
    for (const auto& each : cases) {
        QFile file(place.filePath(u"file"_s));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(each.content);
        file.close();
        EXPECT_EQ(verifySignature(file.fileName(), each.signature, each.key), each.verdict) << each.what;
    }
    EXPECT_EQ(verifySignature(place.filePath(u"missing"_s), signature, key), unreadableFile);
}

} // namespace
