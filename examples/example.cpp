// A first look at KORX from a translator's side: the growable array that every container of
// the library rests on. Build and run it with `./build.sh example`.
#include <korx/korx.h>

#include <cstdio>

namespace {

struct Face {
    int id;
    double area;
};

void printFaces(const char* title, const KORXDynamicArray<Face>& faces) {
    std::printf("%s: %d faces\n", title, faces.size());
    for (int i = 0; i < faces.size(); ++i)
        std::printf("  face %d: area %.2f\n", faces[i].id, faces[i].area);
}

}  // namespace

int main() {
    // An array grows by half its capacity plus one as faces arrive.
    KORXDynamicArray<Face> faces;
    for (int id = 1; id <= 12; ++id)
        faces.add(Face{id, id * 1.5});
    std::printf("12 faces in %d slots\n", faces.getHeader()->capacity);

    // Copies share one header: a change through either is seen by both.
    KORXDynamicArray<Face> shared = faces;
    shared.removeAt(0);
    std::printf("shared copy is the same array: %s, size %d\n", shared == faces ? "yes" : "no",
                faces.size());

    // copy() is the only deep copy.
    KORXDynamicArray<Face> mine = faces.copy();
    mine.resize(3);
    mine.reverse();
    printFaces("my first three, reversed", mine);
    std::printf("the shared array still holds %d faces\n", shared.size());
    return 0;
}
