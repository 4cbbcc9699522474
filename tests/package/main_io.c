/* Reads a one-line road through the installed input/output library; exits 0
 * when its table comes back as written. */
#include <quillon/io.h>

#include <stdio.h>
#include <string.h>

int main(void)
{
    const char* text = "<LandXML><Alignments><Alignment name=\"A\" staStart=\"10\"><CoordGeom>"
                       "<Line><Start>0 0</Start><End>30 40</End></Line>"
                       "</CoordGeom></Alignment></Alignments></LandXML>";
    qio_design* design = NULL;
    qio_alignment alignment;
    qio_error error;
    int ok;
    if (qio_landxml_read_buffer(text, strlen(text), "package.xml", &design, &error) != QIO_OK) {
        printf("%s\n", error.message);
        return 1;
    }
    if (qio_design_alignment(design, 0, &alignment, &error) != QIO_OK) {
        printf("%s\n", error.message);
        qio_design_free(design);
        return 1;
    }
    printf("%s: %u records, chainage %.3f to %.3f\n", alignment.name,
           (unsigned)alignment.horizontal_count, alignment.station_start, alignment.chainage_end);
    ok = alignment.horizontal_count == 2 && alignment.chainage_end == 60.0;
    qio_design_free(design);
    return ok ? 0 : 1;
}
