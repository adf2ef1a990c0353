# SPDX-License-Identifier: Apache-2.0
def correr():
    a = [0] * 2000
    x = 12345
    for i in range(2000):
        x = (x * 1103 + 12345) % 65536
        a[i] = x
    for i in range(1, 2000):
        x = a[i]
        j = i - 1
        while j >= 0:
            if a[j] <= x:
                break
            a[j + 1] = a[j]
            j = j - 1
        a[j + 1] = x
    return a[1000]
