# SPDX-License-Identifier: Apache-2.0
def correr():
    s = 0.5
    for i in range(1, 10000001):
        s = s * 0.999 + 1.5
    return s
