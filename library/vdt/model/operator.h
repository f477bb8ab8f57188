// Operators put something into a variant: a skeleton, say, that was drawn by hand.
#pragma once

#include "vdt/messages/message_handler.h"
#include "vdt/model/model_variant.h"
#include "vdt/skeleton/attribute_set.h"

#include <cstdint>
#include <string>

namespace vdt {

class Operator {
public:
    virtual ~Operator() = default;

    /// False if the operator is to be passed over.
    virtual bool IsActive() const = 0;
    /// The family of operators that this one belongs to.
    virtual void GetKind(std::string& kind) const = 0;
    /// Does the work on `target`. False if that failed.
    virtual bool Apply([[maybe_unused]] AttributeSetInterface& attributes, [[maybe_unused]] ModelVariant& target,
                       [[maybe_unused]] uint64_t position, [[maybe_unused]] MessageHandler& messages)
    {
        return true;
    }
    /// Gives the parameters their first values.
    virtual bool Init([[maybe_unused]] AttributeSetInterface& attributes, [[maybe_unused]] uint64_t position)
    {
        return true;
    }
    /// Runs once all operators have been applied.
    virtual bool Finish([[maybe_unused]] AttributeSetInterface& attributes, [[maybe_unused]] ModelVariant& target,
                        [[maybe_unused]] MessageHandler& messages)
    {
        return true;
    }
};

/// Gives a variant a skeleton that is there already.
class StaticSkeleton : public virtual Operator {
public:
    bool IsActive() const override { return true; }
    void GetKind(std::string& kind) const override { kind = "Branch"; }
    bool Apply(AttributeSetInterface&, ModelVariant& target, uint64_t, MessageHandler&) override
    {
        target.skeleton = skeleton;
        return true;
    }

    Skeleton skeleton;
};

} // namespace vdt
