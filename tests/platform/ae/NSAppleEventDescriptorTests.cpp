// SPDX-License-Identifier: MIT
// Descriptors as objects: reference semantics, copies taken out of containers, failures without an error.
#include "platform/ae/NSAppleEventDescriptor.h"

#include <gtest/gtest.h>

namespace quoddle {

using D = NSAppleEventDescriptor;

TEST(NSAppleEventDescriptor, FactoriesHaveThePlatformsTypes) {
    const std::pair<NSAppleEventDescriptorRef, DescType> kTypes[] = {
        {D::nullDescriptor(), "null"_4cc},
        {D::descriptorWithString(u"x"), "utxt"_4cc},
        {D::descriptorWithInt32(1), "long"_4cc},
        {D::descriptorWithDouble(1), "doub"_4cc},
        {D::descriptorWithBoolean(true), "bool"_4cc},
        {D::descriptorWithEnumCode("yes "_4cc), "enum"_4cc},
        {D::descriptorWithTypeCode("docu"_4cc), "type"_4cc},
        {D::descriptorWithDescriptorType("tdta"_4cc, "ab", 2), "tdta"_4cc},
        {D::descriptorWithFileURL("/a"), "furl"_4cc},
        {D::descriptorWithDate(0), "ldt "_4cc},
        {D::listDescriptor(), "list"_4cc},
        {D::recordDescriptor(), "reco"_4cc},
        {D::currentProcessDescriptor(), "psn "_4cc},
        {D::appleEventWithEventClass("aevt"_4cc, "oapp"_4cc), "aevt"_4cc},
    };
    for (const auto& [descriptor, type] : kTypes)
        EXPECT_EQ(descriptor->descriptorType(), type);
}

TEST(NSAppleEventDescriptor, WhatIsHandedOutIsACopy) {
    auto record = D::recordDescriptor();
    record->setDescriptor(D::listDescriptor(), "usrf"_4cc);
    record->descriptorForKeyword("usrf"_4cc)->insertDescriptor(D::descriptorWithInt32(1), 0);
    EXPECT_EQ(record->descriptorForKeyword("usrf"_4cc)->numberOfItems(), 0u);
    auto list = D::listDescriptor();
    auto item = D::listDescriptor();
    list->insertDescriptor(item, 0);
    item->insertDescriptor(D::descriptorWithInt32(1), 0);
    EXPECT_EQ(list->descriptorAtIndex(1)->numberOfItems(), 0u);
}

TEST(NSAppleEventDescriptor, FailuresAreQuiet) {
    auto number = D::descriptorWithInt32(1);
    number->insertDescriptor(number, 0);
    number->setDescriptor(number, "a   "_4cc);
    number->setAttributeDescriptor(number, "a   "_4cc);
    EXPECT_EQ(number->aeDesc(), AEDesc::ofInt32(1));
    EXPECT_EQ(number->descriptorAtIndex(1), nullptr);
    EXPECT_EQ(number->coerceToDescriptorType("reco"_4cc), nullptr);
    auto list = D::listDescriptor();
    list->insertDescriptor(number, 5);
    EXPECT_EQ(list->numberOfItems(), 0u);
    list->insertDescriptor(nullptr, 0);
    EXPECT_EQ(list->descriptorAtIndex(1)->descriptorType(), "null"_4cc);
    EXPECT_EQ(list->int32Value(), 0);
    EXPECT_EQ(list->stringValue(), std::nullopt);
    EXPECT_FALSE(list->booleanValue());
    EXPECT_EQ(D::descriptorWithString("x")->fileURLValue(), std::nullopt);
}

TEST(NSAppleEventDescriptor, EventsCarryTheirParts) {
    auto event = D::appleEventWithEventClass("ascr"_4cc, "psbr"_4cc, D::currentProcessDescriptor(), 3, 4);
    event->setParamDescriptor(D::descriptorWithString("go"), "snam"_4cc);
    EXPECT_EQ(event->eventClass(), "ascr"_4cc);
    EXPECT_EQ(event->eventID(), "psbr"_4cc);
    EXPECT_EQ(event->returnID(), 3);
    EXPECT_EQ(event->transactionID(), 4);
    EXPECT_EQ(event->paramDescriptorForKeyword("snam"_4cc)->stringValue(), u"go");
    EXPECT_EQ(event->attributeDescriptorForKeyword("addr"_4cc)->descriptorType(), "psn "_4cc);
    event->removeParamDescriptorWithKeyword("snam"_4cc);
    EXPECT_EQ(event->paramDescriptorForKeyword("snam"_4cc), nullptr);
    EXPECT_EQ(D::appleEventWithEventClass("aevt"_4cc, "oapp"_4cc)->returnID(), kAutoGenerateReturnID);
}

TEST(NSAppleEventDescriptor, DatesSurviveTheLocalClock) {
    for (double date : {0.0, 1.0e9, 1711850400.0, 1698541200.0, -1.0e9})
        EXPECT_EQ(D::descriptorWithDate(date)->dateValue(), date);
    EXPECT_EQ(D::descriptorWithDescriptorType("ldt "_4cc, std::string(8, '\x7f'))->dateValue(), std::nullopt);
}

TEST(NSAppleEventDescriptor, TakesTextInAnyForm) {
    std::u16string wide = u"\u00e9";
    for (const auto& made : {D::descriptorWithString(wide), D::descriptorWithString(u"\u00e9"), D::descriptorWithString("\u00e9"),
                             D::descriptorWithString(std::string("\u00e9"))})
        EXPECT_EQ(made->stringValue(), wide);
}

} // namespace quoddle
