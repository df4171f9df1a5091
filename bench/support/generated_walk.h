// A walk written by hand for the telemetry module, which fills the classes that protoc makes of it: what an encoder
// costs that is written and compiled anew for each module.
#ifndef GPB_BENCH_SUPPORT_GENERATED_WALK_H
#define GPB_BENCH_SUPPORT_GENERATED_WALK_H

#include <stdexcept>
#include <string>
#include <string_view>

#include "bench_telemetry.pb.h"

namespace gpbbench
{

template <typename Dom>
class GeneratedWalk
{
public:
    using Node = typename Dom::Node;

    static void Encode(const Node *root, std::string &bytes)
    {
        bench_telemetry::TelemetrySystem system;
        Dom::ForEachNode(root, [&](const char *, const Node *node) { Fill(node, *system.mutable_subscriptions()); });
        if (!system.SerializeToString(&bytes))
        {
            throw std::runtime_error("the message cannot be serialized");
        }
    }

private:
    using Subscriptions = bench_telemetry::TelemetrySystem::Subscriptions;
    using Subscription = Subscriptions::Subscription;
    using Config = Subscription::Config;
    using Profile = Subscription::SensorProfiles::SensorProfile;

    // One digit or two behind "leaf-".
    static int LeafNumber(const char *name)
    {
        constexpr size_t DIGIT = 5;
        return name[DIGIT + 1] == '\0' ? name[DIGIT] - '0' : 10 + name[DIGIT + 1] - '0';
    }

    template <typename Message>
    static typename Message::Encoding EncodingOf(const Node *leaf)
    {
        const std::string_view text = Dom::Text(leaf);
        return text == "PROTO3" ? Message::Encoding_PROTO3
                                : (text == "JSON" ? Message::Encoding_JSON : Message::Encoding_NONE);
    }

    static void Fill(const Node *list, Subscriptions &subscriptions)
    {
        Dom::ForEachNode(list, [&](const char *, const Node *node) { Fill(node, *subscriptions.add_subscription()); });
    }

    static void Fill(const Node *entry, Subscription &subscription)
    {
        Dom::ForEachNode(entry,
                         [&](const char *name, const Node *node)
                         {
                             const std::string_view text = name;
                             if (text == "subscription-name")
                             {
                                 subscription.set_subscription_name(Dom::Text(node));
                             }
                             else if (text == "config")
                             {
                                 Fill(node, *subscription.mutable_config());
                             }
                             else if (text == "sensor-profiles")
                             {
                                 auto &profiles = *subscription.mutable_sensor_profiles();
                                 Dom::ForEachNode(node, [&](const char *, const Node *profile)
                                                  { Fill(profile, *profiles.add_sensor_profile()); });
                             }
                         });
    }

    static void Fill(const Node *container, Config &config)
    {
        Dom::ForEachNode(container,
                         [&](const char *name, const Node *leaf)
                         {
                             switch (LeafNumber(name))
                             {
                             case 0:
                                 config.set_leaf_0(Dom::Text(leaf));
                                 break;
                             case 1:
                                 config.set_leaf_1(Dom::UInt32(leaf));
                                 break;
                             case 2:
                                 config.set_leaf_2(Dom::Bool(leaf));
                                 break;
                             case 3:
                                 config.set_leaf_3(EncodingOf<Config>(leaf));
                                 break;
                             case 4:
                                 config.set_leaf_4(Dom::Int64(leaf));
                                 break;
                             case 5:
                                 config.set_leaf_5(Dom::Double(leaf));
                                 break;
                             case 6:
                                 config.set_leaf_6(Dom::UInt64(leaf));
                                 break;
                             case 7:
                                 config.set_leaf_7(Dom::Bool(leaf));
                                 break;
                             case 8:
                                 config.set_leaf_8(Dom::Text(leaf));
                                 break;
                             case 9:
                                 config.set_leaf_9(Dom::UInt32(leaf));
                                 break;
                             default:
                                 config.set_leaf_10(Dom::Bool(leaf));
                                 break;
                             }
                         });
    }

    static void Fill(const Node *entry, Profile &profile)
    {
        Dom::ForEachNode(entry,
                         [&](const char *name, const Node *leaf)
                         {
                             switch (LeafNumber(name))
                             {
                             case 0:
                                 profile.set_leaf_0(Dom::Text(leaf));
                                 break;
                             case 1:
                                 profile.set_leaf_1(Dom::UInt32(leaf));
                                 break;
                             case 2:
                                 profile.set_leaf_2(Dom::Bool(leaf));
                                 break;
                             default:
                                 profile.set_leaf_3(EncodingOf<Profile>(leaf));
                                 break;
                             }
                         });
    }
};

} // namespace gpbbench

#endif
