// Where protobuf's interface differs from one release to the next. Everything that uses protobuf does it through here;
// scripts/check-protobuf looks for what goes around it.
//
// This is for 3.21, the only release that it has been compiled with. What later ones announce, and the line to change:
//   22  the source tree opens a string view instead of a string                             GpbPbPath
//       collectors of errors are told by RecordError, with string views                     GpbPbErrorCollector
//       the JSON functions give another status class, which also has ok() and message()     none
//       messages go to another logger, which has no handler and no silencer                 GpbPbWatchFatal,
//                                                                                           GpbPbLogSilencer
//       a fatal error ends the process instead of throwing. The library relies on no exception but std::bad_alloc: it
//       asks before it calls what could fail so                                             none
//       messages implement other functions than New, GetCachedSize and GetMetadata           GpbRecord
//   30  texts of descriptors are string views                                               GpbPbText, GpbPbTypeName
#ifndef GPB_CORE_GPB_PROTOBUF_COMPAT_H
#define GPB_CORE_GPB_PROTOBUF_COMPAT_H

#include <google/protobuf/compiler/importer.h>
#include <google/protobuf/descriptor.h>
#include <google/protobuf/stubs/logging.h>
#include <string>

/// A file name as a source tree is asked for it.
using GpbPbPath = const std::string &;

/// A text that belongs to a descriptor and ends with a zero byte. With string views: a std::string of its own, which
/// callers already allow for by not keeping pointers into it.
using GpbPbText = const std::string &;

/// Name of a file, message, field, enumeration or value.
template <typename Descriptor>
GpbPbText GpbPbName(const Descriptor &descriptor)
{
    return descriptor.name();
}

/// Name with package and outer messages.
template <typename Descriptor>
GpbPbText GpbPbFullName(const Descriptor &descriptor)
{
    return descriptor.full_name();
}

inline GpbPbText GpbPbLowercaseName(const google::protobuf::FieldDescriptor &field)
{
    return field.lowercase_name();
}

inline GpbPbText GpbPbJsonName(const google::protobuf::FieldDescriptor &field)
{
    return field.json_name();
}

inline GpbPbText GpbPbPackage(const google::protobuf::FileDescriptor &file)
{
    return file.package();
}

/// Name of a field's type, a literal: "int32", "message", ...
inline const char *GpbPbTypeName(const google::protobuf::FieldDescriptor &field)
{
    return field.type_name();
}

/// What is wrong with the files that an importer reads.
class GpbPbErrorCollector : public google::protobuf::compiler::MultiFileErrorCollector
{
public:
    /// One error; line and column count from 0 and are negative where an error has no place.
    virtual void Report(const std::string &file, int line, int column, const std::string &message) = 0;

private:
    void AddError(const std::string &file, int line, int column, const std::string &message) final
    {
        Report(file, line, column, message);
    }
};

/// While one lives, protobuf's messages of the whole process are told to nobody.
using GpbPbLogSilencer = google::protobuf::LogSilencer;

/// From now on protobuf's fatal errors, of the whole process, are told to `onFatal` first; other messages to nobody.
template <void (*onFatal)(const std::string &message)>
void GpbPbWatchFatal()
{
    google::protobuf::SetLogHandler(
        [](google::protobuf::LogLevel level, const char *, int, const std::string &message)
        {
            if (level == google::protobuf::LOGLEVEL_FATAL)
            {
                onFatal(message);
            }
        });
}

#endif
