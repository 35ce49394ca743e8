<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- SPDX-License-Identifier: MIT -->
<TS version="2.1" language="fr_FR">
<context>
    <name>Greeting</name>
    <message>
        <source>hello</source>
        <translation>bonjour</translation>
    </message>
</context>
</TS>
