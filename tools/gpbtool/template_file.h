/** A template that is read from a file, whoever wrote it. */
#ifndef GPBTOOL_TEMPLATE_FILE_H
#define GPBTOOL_TEMPLATE_FILE_H

#include <memory>
#include <string>

#include "gpb_templatelib/gpb_objtree.h"
#include "template_model.h"

namespace gpbtool
{

struct ObjTreeDeleter
{
    void operator()(ObjNode *tree) const { GPBLIB_ObjTree_Delete(&tree); }
};
using OwnedTree = std::unique_ptr<ObjNode, ObjTreeDeleter>;

/**
 * Reads the bytes of a template, all of them.
 *
 * The library's reader accepts a template that is cut off between two nodes, and forms of numbers that its writer does
 * not use. A file is taken only when writing it again gives the same bytes.
 *
 * @param source  names the bytes in errors
 * @throws ToolError (Input)
 */
OwnedTree ReadTemplate(const std::string &bytes, const std::string &source);

class TemplateFile
{
public:
    /** @param path  a file name; "-" is standard input. @throws ToolError (Input) */
    explicit TemplateFile(const std::string &path);

    const std::string &Bytes() const { return bytes_; }
    ObjNode &Root() const { return *tree_; }
    TemplateNode Model() const { return MakeModel(*tree_); }

private:
    std::string bytes_;
    OwnedTree tree_;
};

} // namespace gpbtool

#endif
