// Stands for the server's library, by which a module for it is known.
int registerTestCommon() { return 0; }
