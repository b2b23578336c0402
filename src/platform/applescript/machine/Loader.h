// SPDX-License-Identifier: MIT
// Loading stored objects as values of a machine, and saving values as stored objects.
#pragma once

#include "platform/applescript/machine/Machine.h"

namespace quoddle::machine {

/// Makes values of stored objects. An object of an unknown kind becomes a Stored value. Scripts that several loads by one loader meet are
/// the same script.
class Loader {
public:
    Loader(Machine& machine, std::shared_ptr<ObjectStore> store) : mMachine(machine), mStore(std::move(store)) {}

    Value load(const Object* object);

private:
    Value loadCode(const Object* object);
    Value loadBlock(const Object* object);
    Value loadData(const Object* object);
    Value loadApplication(const Object* object);
    Value loadScript(const Object* object);
    /// The scope for a table: the script whose table it is, or the locals that a script object kept of the handler that made it.
    HeapObject* loadScope(const Object* table);
    void findScripts(const Object* root);
    void assignHandlerHomes();
    Value loadList(std::span<Object* const> items, std::uint8_t flags);
    Value loadSpecifier(const Object* object);

    Machine& mMachine;
    std::shared_ptr<ObjectStore> mStore;
    std::unordered_map<const Object*, Value> mScripts;
    std::unordered_map<const Object*, const Object*> mTableOwners; // table to script
    std::unordered_map<const Object*, Environment*> mEnvironments; // by table
    std::size_t mDepth = 0;
};

/// Makes stored objects of values. The result refers to the trees and handlers that the scripts were loaded from, so it must be written
/// while the values live.
class Saver {
public:
    explicit Saver(Machine& machine) : mMachine(machine), mStore(std::make_shared<ObjectStore>()) {}

    /// `runOnly` leaves out the trees. Null when a value nests too deeply or cannot be saved; status() says why.
    Object* save(Value value, bool runOnly);
    OSStatus status() const { return mStatus; }

private:
    Object* saveValue(Value value);
    Object* saveObject(HeapObject* object);
    Object* saveScript(Script* script);
    Object* saveScope(HeapObject* scope);
    Object* saveHandler(const Handler* handler);
    Object* saveSpecifier(const Specifier* specifier);
    Object* saveApplication(const Application* application);
    Object* saveRecord(const Record* record);

    Machine& mMachine;
    std::shared_ptr<ObjectStore> mStore;
    std::unordered_map<const HeapObject*, Object*> mSaved;
    std::size_t mDepth = 0;
    bool mRunOnly = false;
    OSStatus mStatus = noErr;
};

} // namespace quoddle::machine
