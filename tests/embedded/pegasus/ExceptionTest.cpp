#include "Throws.h"

#include <Pegasus/Common/CIMStatusCode.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/Exception.h>

#include <type_traits>

using namespace Pegasus;
using apitest::text;

namespace {

TEST(Exception, SaysWhatItsTypeSays) {
    const auto message = [](const Exception& exception) { return text(exception.getMessage()); };
    EXPECT_EQ(message(Exception(String("x"))), "x");
    EXPECT_EQ(message(IndexOutOfBoundsException()), "index out of bounds");
    EXPECT_EQ(message(AlreadyExistsException("x")), "already exists: x");
    EXPECT_EQ(message(InvalidNameException("x")), "The CIM name is not valid: x");
    EXPECT_EQ(message(InvalidNamespaceNameException("x")), "invalid CIM namespace name: x");
    EXPECT_EQ(message(UninitializedObjectException()), "uninitialized object");
    EXPECT_EQ(message(TypeMismatchException()), "type mismatch");
    EXPECT_EQ(message(TypeMismatchException("x")), "type mismatch: x");
    EXPECT_EQ(message(TypeMismatchException("")), "type mismatch: ");
    EXPECT_EQ(message(DynamicCastFailedException()), "dynamic cast failed");
    EXPECT_EQ(message(InvalidDateTimeFormatException()), "invalid datetime format");
    EXPECT_EQ(message(DateTimeOutOfRangeException("x")), "DateTime is out of range : x");
    EXPECT_EQ(message(MalformedObjectNameException("x")), "malformed object name: x");
    EXPECT_EQ(message(ConnectionTimeoutException()), "connection timed out");
}

TEST(Exception, IsNotAStandardException) {
    EXPECT_FALSE((std::is_base_of<std::exception, Exception>::value));
    EXPECT_TRUE((std::is_polymorphic<Exception>::value));
    Exception assigned(String("old"));
    assigned = Exception(String("new"));
    EXPECT_EQ(text(assigned.getMessage()), "new");
}

TEST(CIMException, KeepsItsMessageAsGiven) {
    EXPECT_EQ(CIMException().getCode(), CIM_ERR_SUCCESS);
    EXPECT_EQ(text(CIMException().getMessage()), "");
    EXPECT_EQ(text(CIMException(CIM_ERR_NOT_FOUND).getMessage()), "");
    const CIMException failed(CIM_ERR_FAILED, "why");
    EXPECT_EQ(failed.getCode(), CIM_ERR_FAILED);
    EXPECT_EQ(text(failed.getMessage()), "why");
    CIMException copy(failed);
    EXPECT_EQ(copy.getCode(), CIM_ERR_FAILED);
    copy = CIMException(CIM_ERR_ACCESS_DENIED, "no");
    EXPECT_EQ(copy.getCode(), CIM_ERR_ACCESS_DENIED);
    EXPECT_EQ(text(copy.getMessage()), "no");
}

TEST(CIMException, IsCaughtAsAnException) {
    try {
        throw CIMException(CIM_ERR_NOT_FOUND, "it");
    } catch (const Exception& exception) {
        EXPECT_EQ(text(exception.getMessage()), "it");
        EXPECT_NE(dynamic_cast<const CIMException*>(&exception), nullptr);
    }
}

TEST(CIMStatusCode, HasTheNumbersOfDsp0200) {
    const struct {
        int number;
        const char* name;
    } cases[] = {
        {0, "CIM_ERR_SUCCESS"},
        {1, "CIM_ERR_FAILED"},
        {2, "CIM_ERR_ACCESS_DENIED"},
        {3, "CIM_ERR_INVALID_NAMESPACE"},
        {4, "CIM_ERR_INVALID_PARAMETER"},
        {5, "CIM_ERR_INVALID_CLASS"},
        {6, "CIM_ERR_NOT_FOUND"},
        {7, "CIM_ERR_NOT_SUPPORTED"},
        {8, "CIM_ERR_CLASS_HAS_CHILDREN"},
        {9, "CIM_ERR_CLASS_HAS_INSTANCES"},
        {10, "CIM_ERR_INVALID_SUPERCLASS"},
        {11, "CIM_ERR_ALREADY_EXISTS"},
        {12, "CIM_ERR_NO_SUCH_PROPERTY"},
        {13, "CIM_ERR_TYPE_MISMATCH"},
        {14, "CIM_ERR_QUERY_LANGUAGE_NOT_SUPPORTED"},
        {15, "CIM_ERR_INVALID_QUERY"},
        {16, "CIM_ERR_METHOD_NOT_AVAILABLE"},
        {17, "CIM_ERR_METHOD_NOT_FOUND"},
        {20, "CIM_ERR_NAMESPACE_NOT_EMPTY"},
        {21, "CIM_ERR_INVALID_ENUMERATION_CONTEXT"},
        {22, "CIM_ERR_INVALID_OPERATION_TIMEOUT"},
        {23, "CIM_ERR_PULL_HAS_BEEN_ABANDONED"},
        {24, "CIM_ERR_PULL_CANNOT_BE_ABANDONED"},
        {25, "CIM_ERR_FILTERED_ENUMERATION_NOT_SUPPORTED"},
        {26, "CIM_ERR_CONTINUATION_ON_ERROR_NOT_SUPPORTED"},
        {27, "CIM_ERR_SERVER_LIMITS_EXCEEDED"},
        {28, "CIM_ERR_SERVER_IS_SHUTTING_DOWN"},
        {29, "Unrecognized CIM status code"},
    };
    for (const auto& c : cases)
        EXPECT_STREQ(cimStatusCodeToString(static_cast<CIMStatusCode>(c.number)), c.name);
    EXPECT_EQ(CIM_ERR_METHOD_NOT_FOUND, 17);
    EXPECT_EQ(CIM_ERR_SERVER_IS_SHUTTING_DOWN, 28);
}

TEST(CIMType, HasItsNumbersAndNames) {
    const char* const names[] = {"boolean", "uint8",    "sint8",     "uint16", "sint16",  "uint32",
                                 "sint32",  "uint64",   "sint64",    "real32", "real64",  "char16",
                                 "string",  "datetime", "reference", "object", "instance"};
    int number = 0;
    for (const char* name : names)
        EXPECT_STREQ(cimTypeToString(static_cast<CIMType>(number++)), name);
    EXPECT_EQ(CIMTYPE_BOOLEAN, 0);
    EXPECT_EQ(CIMTYPE_CHAR16, 11);
    EXPECT_EQ(CIMTYPE_INSTANCE, 16);
}

} // namespace
