# SPDX-License-Identifier: Apache-2.0
def ordenar(a, izq, der):
    i = izq
    j = der
    p = a[(izq + der) // 2]
    while i <= j:
        while a[i] < p:
            i = i + 1
        while a[j] > p:
            j = j - 1
        if i <= j:
            t = a[i]
            a[i] = a[j]
            a[j] = t
            i = i + 1
            j = j - 1
    if izq < j:
        ordenar(a, izq, j)
    if i < der:
        ordenar(a, i, der)


def correr():
    a = [0] * 100000
    x = 12345
    for k in range(100000):
        x = (x * 1103 + 12345) % 65536
        a[k] = x
    ordenar(a, 0, 99999)
    return a[50000]
