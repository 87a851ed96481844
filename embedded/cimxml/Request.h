// The envelope of a request: CIM, MESSAGE, SIMPLEREQ and the call within (DSP0203), held against
// the header fields that came with it.
#pragma once

#include "cimxml/Document.h"
#include "cimxml/Message.h"

#include <Pegasus/Common/CIMName.h>

#include <string>

namespace embedded::cimxml {

/// A request whose elements are all as DSP0203 wants them.
struct Request {
    /// Reads `body`. Throws RequestRejected.
    Request(const std::string& body, const Headers& headers);

    Document document;
    std::string messageId;
    std::string method;                  ///< the NAME of the call
    Pegasus::CIMNamespaceName nameSpace; ///< that the call is directed to
    Pegasus::CIMName className; ///< that a METHODCALL is directed to; null for an IMETHODCALL
    Element call;               ///< the IMETHODCALL or METHODCALL

    bool isIntrinsic() const { return className.isNull(); }
};

} // namespace embedded::cimxml
