// The peer of bench/python_calls.py: a method with one argument, bound with pybind11.

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpragmas"
#pragma GCC diagnostic ignored "-Wshadow"
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wold-style-cast"
#include <pybind11/pybind11.h>

namespace {

struct Peer {
    int nextShape(int shape) const { return shape + 1; }
};

}  // namespace

PYBIND11_MODULE(orvane_python_peer, module) {
    pybind11::class_<Peer>(module, "Peer")
        .def(pybind11::init<>())
        .def("nextShape", &Peer::nextShape);
}
#pragma GCC diagnostic pop
