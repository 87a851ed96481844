// The vocabulary of every provider header: export and namespace macros and the integer types.
// Any PEGASUS_PLATFORM_... macro may be defined by a build and none has to be.
#pragma once

#include <cstddef>
#include <cstdio>
#include <cstdlib>

#define PEGASUS_OS_TYPE_UNIX
#define PEGASUS_OS_LINUX
#define PEGASUS_HAVE_NAMESPACES
#define PEGASUS_HAVE_PTHREADS

// Classes that cross the border between the server and a provider module keep one identity (type
// information for exceptions and dynamic_cast) even when the module hides its symbols.
#define PEGASUS_EXPORT __attribute__((visibility("default")))
#define PEGASUS_IMPORT __attribute__((visibility("default")))
#define PEGASUS_HIDDEN_LINKAGE __attribute__((visibility("hidden")))
#define PEGASUS_FORMAT(FORMAT_INDEX, FIRST_ARGUMENT)                                               \
    __attribute__((format(printf, FORMAT_INDEX, FIRST_ARGUMENT)))

#define PEGASUS_NAMESPACE_BEGIN namespace Pegasus {
#define PEGASUS_NAMESPACE_END }
#define PEGASUS_NAMESPACE(X) Pegasus::X
#define PEGASUS_STD(X) std::X
#define PEGASUS_USING_PEGASUS using namespace Pegasus
#define PEGASUS_USING_STD using namespace std
#define PEGASUS_EXPLICIT explicit
#define PEGASUS_TEMPLATE_SPECIALIZATION template <>

#define PEGASUS_SINT64_LITERAL(X) (Sint64(X##LL))
#define PEGASUS_UINT64_LITERAL(X) (Uint64(X##ULL))
#define PEGASUS_64BIT_CONVERSION_WIDTH "ll"
#define PEGASUS_UINT64 unsigned long long
#define PEGASUS_SINT64 long long

/// What a search answers when it finds nothing.
#define PEG_NOT_FOUND Uint32(-1)

namespace Pegasus {

using Boolean = bool;
using Uint8 = unsigned char;
using Sint8 = signed char;
using Uint16 = unsigned short;
using Sint16 = signed short;
using Uint32 = unsigned int;
using Sint32 = signed int;
using Uint64 = unsigned long long;
using Sint64 = long long;
using Real32 = float;
using Real64 = double;

} // namespace Pegasus
