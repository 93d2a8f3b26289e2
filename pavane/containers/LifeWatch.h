#pragma once

#include <memory>

namespace pavane
{

/// Tells a loop on the stack whether the object that it works for still lives: an object holds a
/// LifeToken, the loop a LifeWatch made from it. Handlers that run inside the loop may delete the
/// object; afterwards only the watch may be asked.
class LifeToken
{
public:
    LifeToken() = default;
    LifeToken(const LifeToken&) {}
    LifeToken& operator=(const LifeToken&) { return *this; }

private:
    friend class LifeWatch;
    std::shared_ptr<int> life_ = std::make_shared<int>(0);
};

/// The loop's side of a LifeToken.
class LifeWatch
{
public:
    explicit LifeWatch(const LifeToken& token) : life_(token.life_) {}
    bool alive() const { return !life_.expired(); }

private:
    std::weak_ptr<int> life_;
};

}  // namespace pavane
