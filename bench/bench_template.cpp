// Generating the template of a class, by the number of its leaves. Deleting it again is part of the measure.
#include <deque>
#include <stdexcept>

#include "gpb_templatelib/gpb_template.h"
#include "platform/vec.h"
#include "platform/zmp.h"
#include "support/bench_run.h"
#include "support/library_session.h"

namespace
{

constexpr const char *MODULE = "bench-class";

// A module whose top message has one container per number of leaves, every other leaf a string.
std::string ProtoOf(const std::vector<size_t> &sizes)
{
    std::string text = "syntax = \"proto3\";\nmessage Top {\n";
    std::string messages;
    for (size_t i = 0; i < sizes.size(); ++i)
    {
        const std::string number = std::to_string(sizes[i]);
        text += "  Class" + number + " class" + number + " = " + std::to_string(i + 1) + ";\n";
        messages += "message Class" + number + " {\n";
        for (size_t leaf = 0; leaf < sizes[i]; ++leaf)
        {
            messages += std::string(leaf % 2 == 0 ? "  uint32" : "  string") + " some_leaf_" + std::to_string(leaf) +
                        " = " + std::to_string(leaf + 1) + ";\n";
        }
        messages += "}\n";
    }
    return text + "}\n" + messages;
}

class Subject
{
public:
    Subject(GpbLibContext *context, GpbYangNode *top, size_t leaves)
        : context_(context), className_("class" + std::to_string(leaves))
    {
        node_.pstParent = top;
        node_.pcName = className_.c_str();
        node_.uiClassId = static_cast<uint32_t>(leaves);
        node_.pstLeafVec = VEC_VectorInit_F(1, static_cast<uint32_t>(leaves), "bench", 1);
        for (size_t i = 0; i < leaves; ++i)
        {
            const char *name = names_.emplace_back("some-leaf-" + std::to_string(i)).c_str();
            GpbYangLeaf *leaf = &leaves_.emplace_back(GpbYangLeaf{name, 0, static_cast<uint32_t>(i + 1), 0});
            VEC_VectorSet(node_.pstLeafVec, leaf);
        }
    }
    ~Subject() { VEC_VectorFree_F(node_.pstLeafVec, "bench", 2); }
    Subject(const Subject &) = delete;
    Subject &operator=(const Subject &) = delete;

    void Generate() const
    {
        if (GPBLIB_UpdateProtoFileClassInfo(context_, MODULE, 0, className_.c_str(), &node_) != 0)
        {
            throw std::runtime_error("no template for " + className_);
        }
        VecVector *templates = context_->pstTemplateVec;
        auto *info = static_cast<GpbTemplateInfo *>(templates->ppvSlot[0]);
        GPBLIB_ObjTree_Delete(&info->pstObjTree);
        ZMP_Free_F(info, "bench", 3);
        templates->ppvSlot[0] = nullptr;
        VEC_VectorZipEmptySlot(templates);
    }

private:
    GpbLibContext *context_;
    std::string className_;
    GpbYangNode node_ = {};
    std::deque<std::string> names_;
    std::deque<GpbYangLeaf> leaves_;
};

} // namespace

int main(int argc, char **argv)
{
    gpbbench::LibrarySession session;
    GpbYangNode top = {};
    top.pcName = "top";
    std::deque<Subject> subjects;
    return gpbbench::RunTables(argc, argv,
                               [&]
                               {
                                   const std::vector<size_t> sizes = {10, 100, 1000};
                                   session.AddModule(MODULE, ProtoOf(sizes));
                                   gpbbench::Table table = {{{"leaves of a class", {}, 0}}, {"generate"}};
                                   for (const size_t leaves : sizes)
                                   {
                                       const Subject *subject = &subjects.emplace_back(session.Context(), &top, leaves);
                                       const std::string name = "leaves:" + std::to_string(leaves);
                                       table.series[0].names.push_back(name);
                                       gpbbench::Register(name, "generate", leaves, [=] { subject->Generate(); });
                                   }
                                   return std::vector<gpbbench::Table>{table};
                               });
}
