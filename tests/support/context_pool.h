/// Contexts of several classes, each beside its model: both are changed by the same random operations.

#ifndef TESTS_SUPPORT_CONTEXT_POOL_H
#define TESTS_SUPPORT_CONTEXT_POOL_H

#include <support/foreign_contexts.h>
#include <support/model_context.h>
#include <support/random_source.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace VrexZynConfigTools::support {

/// One context. Only those of one class can be copied to each other as a whole.
struct PooledContext
{
    enum Kind
    {
        BASE,
        ZYN,
        PREFIXED
    };

    Kind mKind;
    std::unique_ptr<CBaseContext> mContext;
    ModelContext mModel;
};

class ContextPool
{
public:
    /// Gives a tag and its value; an empty value deletes the tag.
    using TagSource = std::function<std::pair<std::string, std::string>()>;

    ContextPool(RandomSource & random, TagSource tags,
        const std::vector<PooledContext::Kind> & kinds = { PooledContext::BASE, PooledContext::ZYN,
            PooledContext::PREFIXED })
        : mRandom(random)
        , mTags(std::move(tags))
    {
        for (const auto kind : kinds) {
            for (int i = 0; i < 3; ++i)
                mContexts.push_back(Make(kind));
        }
    }

    PooledContext & Any() { return mContexts[mRandom.Below(mContexts.size())]; }

    /// Changes one context, mostly by a tag, sometimes by copying, moving or assigning another one.
    void Change()
    {
        PooledContext & target = Any();
        PooledContext & source = Any();
        switch (mRandom.Below(12)) {
        case 0:
            return AssignBase(target, source);
        case 1:
            return MoveBase(target, source);
        case 2:
            return CopyWhole(target, source);
        case 3:
            return MoveWhole(target, source);
        case 4:
            return Replace(target, source);
        case 5:
            return SetMany(target);
        case 6:
            return Parse(target);
        default:
            return SetOne(target);
        }
    }

private:
    using Prefixed = PrefixedContext<CZynContext>;

    static PooledContext Make(PooledContext::Kind kind)
    {
        PooledContext made{ kind, nullptr, {} };
        made.mModel.mIsZyn = kind != PooledContext::BASE;
        if (kind == PooledContext::BASE)
            made.mContext = std::make_unique<CBaseContext>("base");
        else if (kind == PooledContext::ZYN)
            made.mContext = std::make_unique<CZynContext>();
        else {
            made.mModel.mPrefix = Prefixed::PREFIX;
            made.mContext = std::make_unique<Prefixed>();
        }
        return made;
    }

    void SetOne(PooledContext & target)
    {
        auto [key, value] = mTags();
        if (target.mKind == PooledContext::PREFIXED && mRandom.Chance(70))
            key = Prefixed::PREFIX + key;
        target.mContext->SetTag(key, value);
        target.mModel.SetTag(key, value);
    }

    void SetMany(PooledContext & target)
    {
        const auto [key, value] = mTags();
        const std::string part = key.substr(0, mRandom.Below(key.size() + 1));
        target.mContext->SetTags(part, value);
        target.mModel.SetTags(part, value);
    }

    void Parse(PooledContext & target)
    {
        std::string text;
        for (int i = 0; i < 2; ++i) {
            const auto [key, value] = mTags();
            text += key + "=" + value + ";";
            target.mModel.SetTag(key, value);
        }
        target.mContext->Parse(text);
    }

    /// Assigns what the base class holds, from and to a context of any class.
    static void AssignBase(PooledContext & target, PooledContext & source)
    {
        static_cast<CBaseContext &>(*target.mContext).CBaseContext::operator=(*source.mContext);
        target.mModel.AssignBaseOf(source.mModel);
    }

    static void MoveBase(PooledContext & target, PooledContext & source)
    {
        if (&target == &source)
            return;
        target.mContext->CBaseContext::operator=(std::move(*source.mContext));
        target.mModel.AssignBaseOf(source.mModel);
        source.mModel.LoseTags();
    }

    template <typename ActionT>
    static void OnSameClass(PooledContext & target, PooledContext & source, ActionT && action)
    {
        if (target.mKind != source.mKind || &target == &source)
            return;
        if (target.mKind == PooledContext::BASE)
            action(*target.mContext, *source.mContext);
        else if (target.mKind == PooledContext::ZYN)
            action(static_cast<CZynContext &>(*target.mContext), static_cast<CZynContext &>(*source.mContext));
        else
            action(static_cast<Prefixed &>(*target.mContext), static_cast<Prefixed &>(*source.mContext));
    }

    static void CopyWhole(PooledContext & target, PooledContext & source)
    {
        OnSameClass(target, source, [&](auto & to, auto & from) {
            to = from;
            target.mModel = source.mModel;
        });
    }

    static void MoveWhole(PooledContext & target, PooledContext & source)
    {
        OnSameClass(target, source, [&](auto & to, auto & from) {
            to = std::move(from);
            target.mModel = source.mModel;
            source.mModel.LoseAll();
        });
    }

    /// Puts a copy, a clone or what was moved out of the source in the target's place.
    void Replace(PooledContext & target, PooledContext & source)
    {
        OnSameClass(target, source, [&](auto & /*to*/, auto & from) {
            using ContextT = std::remove_reference_t<decltype(from)>;
            const std::size_t way = mRandom.Below(3);
            target.mModel = way == 1 ? source.mModel.Clone() : source.mModel;
            if (way == 0)
                target.mContext = std::make_unique<ContextT>(from);
            else if (way == 1)
                target.mContext.reset(static_cast<CBaseContext *>(from.Clone()));
            else {
                target.mContext = std::make_unique<ContextT>(std::move(from));
                source.mModel.LoseAll();
            }
        });
    }

    RandomSource & mRandom;
    TagSource mTags;
    std::vector<PooledContext> mContexts;
};

}   // namespace VrexZynConfigTools::support

#endif
