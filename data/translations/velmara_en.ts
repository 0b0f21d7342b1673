<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>Batch</name>
    <message numerus="yes">
        <source>About %n minute(s) left</source>
        <translation>
            <numerusform>About %n minute left</numerusform>
            <numerusform>About %n minutes left</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>About %n hour(s) left</source>
        <translation>
            <numerusform>About %n hour left</numerusform>
            <numerusform>About %n hours left</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n photo(s) denoised</source>
        <translation>
            <numerusform>%1 of %n photo denoised</numerusform>
            <numerusform>%1 of %n photos denoised</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>velmara::BatchWindow</name>
    <message numerus="yes">
        <source>%n photo(s)</source>
        <translation>
            <numerusform>%n photo</numerusform>
            <numerusform>%n photos</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Denoise %n Photo(s)</source>
        <translation>
            <numerusform>Denoise %n Photo</numerusform>
            <numerusform>Denoise %n Photos</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n photo(s)</source>
        <translation>
            <numerusform>%1 of %n photo</numerusform>
            <numerusform>%1 of %n photos</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n photo(s) would be left as they are. Results that are written stay.</source>
        <translation>
            <numerusform>%n photo would be left as it is. Results that are written stay.</numerusform>
            <numerusform>%n photos would be left as they are. Results that are written stay.</numerusform>
        </translation>
    </message>
</context>
</TS>
