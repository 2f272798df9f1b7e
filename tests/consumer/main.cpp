#include <korx/korx.h>

int main() {
    KORXDynamicArray<int> values;
    for (int i = 0; i < 20; ++i)
        values.add(i);
    return values.size() == 20 && values[19] == 19 && values.getHeader()->capacity == 25 ? 0 : 1;
}
