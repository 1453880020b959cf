#include "plugin/front.h"

Front& TheFront() {
    static Front front;
    return front;
}
