// SPDX-License-Identifier: MIT
// Guards for a component: entering it from outside, leaving it for a callback, and noting the running script.
#pragma once

#include "platform/applescript/component/Component.h"

namespace quoddle::component {

class Component::Entry {
public:
    explicit Entry(Component& component) : mComponent(component) {
        mIsFirst = !component.mLock.isHeldByThisThread();
        component.mLock.lock();
        if (!mIsFirst)
            return;
        auto& idle = component.mIdleContexts;
        if (idle.empty())
            idle.push_back(component.mMachine.newContext());
        mContext = idle.back();
        idle.pop_back();
        component.mMachine.use(mContext);
        // Handlers may end without ever coming to a safe point, so garbage is collected here, where this thread holds no values yet.
        if (component.mMachine.heap().wantsCollection())
            component.mMachine.collect();
    }
    ~Entry() {
        if (mIsFirst) {
            mComponent.mIdleContexts.push_back(mContext);
            mComponent.mMachine.use(nullptr);
        }
        mComponent.mLock.unlock();
    }
    Entry(const Entry&) = delete;
    Entry& operator=(const Entry&) = delete;

private:
    Component& mComponent;
    ExecutionContext* mContext = nullptr;
    bool mIsFirst;
};

class Component::Callback {
public:
    explicit Callback(Component& component)
        : mComponent(component), mContext(component.mMachine.use(nullptr)), mLocation(std::exchange(component.mLocation, {})),
          mDepth(component.mLock.release()) {}
    ~Callback() {
        mComponent.mLock.restore(mDepth);
        mComponent.mLocation = std::move(mLocation);
        mComponent.mMachine.use(mContext);
    }
    Callback(const Callback&) = delete;
    Callback& operator=(const Callback&) = delete;

private:
    Component& mComponent;
    ExecutionContext* mContext;
    std::string mLocation;
    std::size_t mDepth;
};

class Component::Running {
public:
    Running(Component& component, const std::string& location)
        : mComponent(component), mBefore(std::exchange(component.mLocation, location)) {}
    ~Running() { mComponent.mLocation = std::move(mBefore); }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

private:
    Component& mComponent;
    std::string mBefore;
};

} // namespace quoddle::component
