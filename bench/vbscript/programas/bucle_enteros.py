# SPDX-License-Identifier: Apache-2.0
def correr():
    s = 0
    for i in range(1, 10000001):
        s = s + i % 7
    return s
