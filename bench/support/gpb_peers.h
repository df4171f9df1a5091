// The peers of an encoder to GPB, for documents of either kind: each gives the bytes of the same message.
#ifndef GPB_BENCH_SUPPORT_GPB_PEERS_H
#define GPB_BENCH_SUPPORT_GPB_PEERS_H

#include <string>

#include <google/protobuf/dynamic_message.h>

#include "support/floor_walk.h"
#include "support/textbook_walk.h"

namespace gpbbench
{

template <typename Dom>
class GpbPeers
{
public:
    using Node = typename Dom::Node;

    /// @param root  node of the top-level container; lives as long as the peers
    GpbPeers(const google::protobuf::DescriptorPool *pool, const std::string &topMessage, const Node *root)
        : pool_(pool), root_(root), factory_(pool), floor_(pool->FindMessageTypeByName(topMessage), root),
          prototype_(factory_.GetPrototype(floor_.Type()))
    {
    }

    /// The reflection floor, whose factory is kept.
    std::string Floor() const
    {
        std::string bytes;
        floor_.Encode(*prototype_, bytes);
        return bytes;
    }

    /// The floor with a factory of its own, which makes the message types anew.
    std::string FloorWithFactory() const
    {
        google::protobuf::DynamicMessageFactory factory(pool_);
        std::string bytes;
        floor_.Encode(*factory.GetPrototype(floor_.Type()), bytes);
        return bytes;
    }

    std::string Textbook() const
    {
        std::string bytes;
        TextbookWalk<Dom>::Encode(*prototype_, root_, bytes);
        return bytes;
    }

    const google::protobuf::Message &Prototype() const { return *prototype_; }

    /// What a kept factory is asked for at the beginning of a request.
    const google::protobuf::Message *LookUpPrototype() { return factory_.GetPrototype(floor_.Type()); }

private:
    const google::protobuf::DescriptorPool *pool_;
    const Node *root_;
    google::protobuf::DynamicMessageFactory factory_;
    FloorWalk<Dom> floor_;
    const google::protobuf::Message *prototype_;
};

} // namespace gpbbench

#endif
