/**
 * @file
 * What the exported headers share: the export mark and the names under which C and C++ see foreign classes.
 *
 * In C++ the `GpbPb*` names are the protobuf classes themselves; C sees incomplete types, so that a pointer to one
 * has the same size in both.
 */
#ifndef GPB_TEMPLATELIB_GPB_API_H
#define GPB_TEMPLATELIB_GPB_API_H

#if defined(__GNUC__)
#define GPB_API __attribute__((visibility("default")))
#else
#define GPB_API
#endif

#ifdef __cplusplus

namespace google::protobuf
{
class Descriptor;
class FieldDescriptor;
class FileDescriptor;
} // namespace google::protobuf

namespace google::protobuf::compiler
{
class DiskSourceTree;
class Importer;
} // namespace google::protobuf::compiler

/**@{*/
/** A class of protobuf under a name that C has, too. */
typedef google::protobuf::FileDescriptor GpbPbFileDescriptor;
typedef google::protobuf::Descriptor GpbPbDescriptor;
typedef google::protobuf::FieldDescriptor GpbPbFieldDescriptor;
typedef google::protobuf::compiler::DiskSourceTree GpbPbSourceTree;
typedef google::protobuf::compiler::Importer GpbPbImporter;
/**@}*/

#else

typedef struct GpbPbFileDescriptor GpbPbFileDescriptor;
typedef struct GpbPbDescriptor GpbPbDescriptor;
typedef struct GpbPbFieldDescriptor GpbPbFieldDescriptor;
typedef struct GpbPbSourceTree GpbPbSourceTree;
typedef struct GpbPbImporter GpbPbImporter;

#endif

struct _xmlDoc;
struct _xmlNode;
struct cJSON;

#endif
