/* A C host linked against the installed libaecore: the entry point fills the callback table. */
#include <aecore/aecore.h>
#include <stdio.h>

int main(void)
{
    LyrAECAlgorithmCallbacks callbacks = {0};
    LyrAECAlgorithmEntry(&callbacks);
    if ((48 != callbacks.size) || (NULL == callbacks.pfnCreate) || (NULL == callbacks.pfnSetAlgoInterface))
    {
        fprintf(stderr, "callback table not filled\n");
        return 1;
    }
    printf("libaecore entry ok, table size %u\n", callbacks.size);
    return 0;
}
