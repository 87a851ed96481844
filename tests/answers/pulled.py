"""What is asked of a server about pulled enumerations, which takes several requests that refer to each
other: each operation that opens one, to its end in small pieces, and what is no proper question."""

import xml.etree.ElementTree as ElementTree

import canonical
import request
import suite
from request import value

INSTANCES, PATHS = "PullInstancesWithPath", "PullInstancePaths"
# What opens an enumeration: its pull, and whether it is asked about a class.
OPENING = {
    "OpenEnumerateInstances": (INSTANCES, True),
    "OpenEnumerateInstancePaths": (PATHS, True),
    "OpenReferenceInstances": (INSTANCES, False),
    "OpenReferenceInstancePaths": (PATHS, False),
    "OpenAssociatorInstances": (INSTANCES, False),
    "OpenAssociatorInstancePaths": (PATHS, False),
}
PIECE = 3


def maximum(count):
    return value("MaxObjectCount", count)


class Step:
    """A request of a session, and what came of it."""

    def __init__(self, connection, namespace, method, *parameters):
        status, text = connection.send(request.Request(namespace, method, parameters))
        self.objects, self.context = [], None
        if status != 200:
            self.said = {"status": status}
            return
        response = ElementTree.fromstring(text).find(".//IMETHODRESPONSE")
        error = response.find("ERROR")
        if error is not None:
            self.said = {"error": [error.get("CODE"), error.get("DESCRIPTION")]}
            return
        self.objects = [canonical.text(each) for each in response.findall("IRETURNVALUE/*")]
        self.said = {"objects": self.objects}
        out = {each.get("NAME"): each.findtext("VALUE") for each in response.findall("PARAMVALUE")}
        if out.get("EndOfSequence") == "FALSE":
            self.context = out["EnumerationContext"]


class Sessions:
    def __init__(self, connection, namespace):
        self._connection = connection
        self._namespace = namespace

    def _step(self, method, *parameters, namespace=None):
        return Step(self._connection, namespace or self._namespace, method, *parameters)

    def _pulled(self, method, *parameters):
        """All objects, however they came; or the error."""
        step = self._step(method, *parameters, maximum(1))
        found = step.objects[:]
        while step.context is not None:
            step = self._step(OPENING[method][0], value("EnumerationContext", step.context),
                              maximum(PIECE))
            found += step.objects
        return {"objects": found} if "objects" in step.said else step.said

    def answers(self):
        """(id, whether the order is open, answer)."""
        for method, (pull, of_class) in OPENING.items():
            for words, source in self._classes() if of_class else self._sources():
                yield f"{method} {words}", True, self._pulled(method, source)
            for words, source in self._sources() if not of_class else ():
                for name in ("CIM_ElementConformsToProfile", "CIM_NoSuch"):
                    given = "ResultClass" if "Reference" in method else "AssocClass"
                    yield (f"{method} {words} {given}={name}", True, self._pulled(
                        method, source, (given, request.of_class(name))))
            source = next(self._classes() if of_class else self._sources())[1]
            for words, answered in self._odd(method, pull, source):
                yield f"{method} {words}", False, answered

    def _classes(self):
        for name in suite.OWN + suite.ASSOCIATIONS + suite.SWITCH + ("CIM_NoSuch",):
            yield name, ("ClassName", request.of_class(name))

    def _sources(self):
        for name, key in (("CIM_RegisteredProfile", "Orvex1"),
                          ("CIM_RegisteredSubProfile", "Orvex6"), ("CIM_RegisteredProfile", "none"),
                          ("ORVEX_SoftwareIdentity", "OrvexSI1")):
            yield f"{name} {key}", ("InstanceName", request.name(name, InstanceID=key))

    def _odd(self, method, pull, source):
        def opened(*more, **place):
            return self._step(method, source, *more, **place)

        def pulling(step, count, operation=pull, **place):
            return self._step(operation, value("EnumerationContext", step.context),
                              maximum(count), **place)

        def closing(step, **place):
            return self._step("CloseEnumeration", value("EnumerationContext", step.context), **place)

        def once(*more, **place):
            step = opened(*more, **place)
            if step.context is not None:
                closing(step)
            return step.said

        other = PATHS if pull is INSTANCES else INSTANCES
        yield "nothing", self._step(method).said
        yield "elsewhere", once(namespace="root/nowhere")
        yield "without a name that it knows", once(value("Zip", "zap"))
        yield "without keys", self._step(method, (
            "InstanceName", request.name("CIM_RegisteredProfile"))).said
        yield "no number", once(value("MaxObjectCount", "-1"))
        yield "no time", once(value("OperationTimeout", "0"))
        yield "a long time", once(value("OperationTimeout", "200"))
        yield "too long a time", once(value("OperationTimeout", "100000"))
        yield "going on", once(value("ContinueOnError", "TRUE"))
        yield "a filter", once(maximum(1), value("FilterQueryLanguage", "DMTF:FQL"),
                               value("FilterQuery", "a = 1"))
        yield "a language", once(value("FilterQueryLanguage", "DMTF:FQL"))
        said = once(maximum(10001))  # what comes is compared above
        yield "10001 at once", said if "error" in said else {"objects": []}
        step = opened()
        yield "nothing at first", {"objects": step.objects}
        yield "pulled nothing", pulling(step, 0).said
        yield "pulled elsewhere", pulling(step, 1, namespace="root/cimv2"
                                          if self._namespace == "interop" else "interop").said
        yield "pulled in no namespace", pulling(step, 1, namespace="root/nowhere").said
        yield "closed", closing(step).said
        yield "closed twice", closing(step).said
        yield "pulled when closed", pulling(step, 1).said
        step = opened()
        yield "pulled as the other kind", pulling(step, 1, other).said
        said = pulling(step, 1).said
        yield "pulled after that", said if "error" in said else {"objects": []}
        yield "counted", self._step("EnumerationCount", value("EnumerationContext", "x")).said
        yield "without a number", self._step(pull, value("EnumerationContext", "x")).said
        yield "without a context", self._step(pull, maximum(1)).said


def answers(connection):
    # In the interop namespace of OpenPegasus, what an enumeration has not told yet goes on being asked
    # of its own provider, beside the next question, which that does not survive.
    for namespace in (one for one in suite.NAMESPACES if one != suite.INTEROP):
        for words, concurrent, answer in Sessions(connection, namespace).answers():
            yield f"{namespace} pulled: {words}", concurrent, answer
