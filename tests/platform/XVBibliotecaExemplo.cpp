// A library with one function, loaded by name by the tests. MinGW exports every function of a library
// that marks none.
extern "C" int XVSomaTeste(int i1, int i2);
extern "C" int XVSomaTeste(int i1, int i2) {
    return i1 + i2;
}
