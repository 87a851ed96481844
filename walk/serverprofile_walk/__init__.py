"""The walk of a storage management client through the Server profile, and a CIM-XML client."""

VERSION = "0.1.0"
