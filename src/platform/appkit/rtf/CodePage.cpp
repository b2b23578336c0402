// SPDX-License-Identifier: MIT
#include "platform/appkit/rtf/CodePage.h"

#include <memory>
#include <unicode/ucnv.h>

namespace quoddle {

namespace {

constexpr int kMacRoman = 10000;
constexpr int kUTF8 = 65001;
constexpr int kWestern = 1252;

using Converter = std::unique_ptr<UConverter, decltype(&ucnv_close)>;

Converter openConverter(int codePage) {
    const QByteArray name = codePage == kMacRoman                  ? QByteArray("macintosh")
                            : codePage == kUTF8                    ? QByteArray("UTF-8")
                            : codePage >= 1250 && codePage <= 1258 ? "windows-" + QByteArray::number(codePage)
                                                                   : "cp" + QByteArray::number(codePage);
    UErrorCode error = U_ZERO_ERROR;
    Converter converter(ucnv_open(name, &error), &ucnv_close);
    if (U_SUCCESS(error))
        return converter;
    error = U_ZERO_ERROR;
    return Converter(ucnv_open("windows-1252", &error), &ucnv_close);
}

} // namespace

QString decodeCodePage(const QByteArray& bytes, int codePage) {
    const Converter converter = openConverter(codePage);
    if (!converter)
        return QString::fromLatin1(bytes);
    QString text(bytes.size() * 2 + 1, Qt::Uninitialized);
    UErrorCode error = U_ZERO_ERROR;
    const int length = ucnv_toUChars(converter.get(), reinterpret_cast<UChar*>(text.data()), static_cast<int>(text.size()),
                                     bytes.constData(), static_cast<int>(bytes.size()), &error);
    text.resize(U_SUCCESS(error) ? length : 0);
    return text;
}

int codePageOfCharset(int charset) {
    static constexpr struct {
        int charset;
        int codePage;
    } kRows[] = {{77, kMacRoman}, {128, 932},  {129, 949},  {130, 1361}, {134, 936},  {136, 950}, {161, 1253}, {162, 1254},
                 {163, 1258},     {177, 1255}, {178, 1256}, {186, 1257}, {204, 1251}, {222, 874}, {238, 1250}};
    for (const auto& row : kRows)
        if (row.charset == charset)
            return row.codePage;
    return 0;
}

} // namespace quoddle
