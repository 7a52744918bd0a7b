/* Writes the files that matio writes: cc write_matio.c -lmatio && ./a.out DIRECTORY. */

#include <matio.h>
#include <stdio.h>

static void write(const char *directory, const char *name, int rows, enum matio_classes indexClass) {
    double values[] = {1.5, 3, 5, 7, -2, 4.25, 6, 8};
    short indices[] = {1, 4, 7, 10, 2, 5, 8, 11, 3, 6, -9, 12};
    size_t valueSize[] = {(size_t)rows, 2};
    size_t indexSize[] = {(size_t)rows, 3};
    char path[4096];
    snprintf(path, sizeof path, "%s/matio-%s.mat", directory, name);
    mat_t *file = Mat_CreateVer(path, NULL, MAT_FT_MAT5);
    matvar_t *v = Mat_VarCreate("v", MAT_C_DOUBLE, MAT_T_DOUBLE, 2, valueSize, values, 0);
    matvar_t *i = Mat_VarCreate("i", indexClass, MAT_T_INT16, 2, indexSize, indices, 0);
    Mat_VarWrite(file, v, MAT_COMPRESSION_NONE);
    Mat_VarWrite(file, i, MAT_COMPRESSION_NONE);
    Mat_VarFree(v);
    Mat_VarFree(i);
    Mat_Close(file);
}

int main(int argc, char **argv) {
    if (argc != 2) return 1;
    write(argv[1], "four-rows", 4, MAT_C_DOUBLE);
    write(argv[1], "padded", 3, MAT_C_DOUBLE);
    write(argv[1], "int16-class", 4, MAT_C_INT16);
    return 0;
}
